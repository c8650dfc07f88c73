// What scripts/mutate --self-test breaks: every mutant of this file changes what it prints.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Limit = 3;
constexpr int Sizes[] = {1, 2}; // not in a function: left alone

constexpr int twice(int value)
{
    return value * 2; // a constant expression: left alone
}

struct Counter
{
    int count = 0;
    void add(int value) { count += value; }
};

int compared(int a, int b)
{
    int bits = 0;
    if (a < b) {
        bits += 1;
    }
    if (a <= b) {
        bits += 2;
    }
    if (a > b) {
        bits += 4;
    }
    if (a >= b) {
        bits += 8;
    }
    return a == b ? bits : bits + (a != b) * 16 * 3;
}

std::string text(const std::string& name, bool loud)
{
    if (name.empty()) {
        return "<b> && \"x < y\""; // a text with + and - in it
    }
    return name + (loud ? "!" : "?");
}

bool both(bool a, bool b)
{
    return a && b;
}

bool any(bool a, bool b)
{
    return a || b;
}

int sum(const std::vector<int>& values)
{
    Counter counter;
    std::unique_ptr<int> last;
    for (const int value : values) {
        if (!last || *last != value) {
            counter.add(value);
        }
        last = std::make_unique<int>(value);
    }
    if (auto at = std::find(values.begin(), values.end(), Limit); at != values.end())
        counter.add(100);
    else
        counter.add(1000);
    return counter.count;
}

int spread(const std::vector<int>& values)
{
    return std::max(values.front(), values.back()) * 10 -
        std::min(values.front(), values.back()) % 3;
}

void halve(double& value)
{
    if (value > Limit) {
        return;
    }
    value = value / 2.0 - 0.25;
}

void print()
{
    static_assert(twice(Sizes[1]) == 4);
    for (int a = 0; a <= 2; ++a) {
        std::printf("%d ", compared(a, 1));
    }
    std::printf(
        "%s %s %s\n", text("a", true).c_str(), text("b", false).c_str(), text("", true).c_str());
    for (const bool a : {false, true}) {
        for (const bool b : {false, true}) {
            std::printf("%d%d ", both(a, b), any(a, b));
        }
    }
    std::printf("%d %d %d ", sum({1, 1, 5}), sum({1, 2, 3}), spread({5, 6}));
    for (double value : {1.0, 3.0, 4.0}) {
        halve(value);
        std::printf("%g ", value);
    }
}

} // namespace

int main()
{
    print();
}
