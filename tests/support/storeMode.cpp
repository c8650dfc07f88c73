// storeMode MODE...: stores these link modes; without MODE: prints the stored one. The tests let
// calls on its files go wrong.
#include "link/LinkMode.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        linkMode::store(std::atoi(argv[i]));
    }
    if (argc < 2) {
        std::printf("%d\n", linkMode::stored());
    }
    return 0;
}
