// storeMode MODE: stores the link mode; without MODE: prints the stored one. The tests let calls on
// its files go wrong.
#include "link/LinkMode.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc > 1) {
        linkMode::store(std::atoi(argv[1]));
    } else {
        std::printf("%d\n", linkMode::stored());
    }
    return 0;
}
