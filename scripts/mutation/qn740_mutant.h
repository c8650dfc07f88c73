// Switches the mutants that scripts/mutate puts into a copy of the sources. Each site asks by its
// number, which the environment variable QN740_MUTANT selects; 0 or nothing selects none. A file
// that QN740_MUTANT_REACHED names gets a byte set for each site that was reached.
#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace mut {

// Maps the file of reached sites, shared, so that a program that is killed leaves its sites too.
inline unsigned char* mapReached()
{
    const char* name = std::getenv("QN740_MUTANT_REACHED");
    const int file = name != nullptr ? ::open(name, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    struct stat status
    {
    };
    void* place = MAP_FAILED;
    if (::fstat(file, &status) == 0) {
        place = ::mmap(nullptr, static_cast<size_t>(status.st_size), PROT_READ | PROT_WRITE,
            MAP_SHARED, file, 0);
    }
    ::close(file);
    return place == MAP_FAILED ? nullptr : static_cast<unsigned char*>(place);
}

inline int selected()
{
    static const int number = [] {
        const char* text = std::getenv("QN740_MUTANT");
        return text != nullptr ? std::atoi(text) : 0;
    }();
    return number;
}

inline bool on(int id)
{
    static unsigned char* const reached = mapReached();
    if (reached != nullptr) {
        reached[id] = 1;
    }
    return id == selected();
}

// A condition, negated.
template <typename T>
bool flip(int id, const T& condition)
{
    return static_cast<bool>(condition) != on(id);
}

// A constant, changed: a truth value to the other one, a number to the next one, a fraction to
// half as much again.
template <typename T>
T constant(int id, T value)
{
    if (!on(id)) {
        return value;
    }
    if constexpr (std::is_same_v<T, bool>) {
        return !value;
    } else if constexpr (std::is_floating_point_v<T>) {
        return value == T(0) ? T(1) : value * T(1.5);
    } else {
        static_assert(std::is_integral_v<T>);
        return static_cast<T>(value + 1);
    }
}

// The smaller and the larger of two, exchanged.
template <typename T>
T smaller(int id, const T& a, const T& b)
{
    return (b < a) != on(id) ? b : a;
}
template <typename T>
T larger(int id, const T& a, const T& b)
{
    return (a < b) != on(id) ? b : a;
}

// "!" left out: Not(id) ->* x
struct Not
{
    int id;
    explicit Not(int number)
        : id(number)
    {
    }
};
template <typename T>
bool operator->*(Not site, const T& value)
{
    return static_cast<bool>(value) == on(site.id);
}

// Binary operators: "a < b" becomes "a < Less(id) < b". The second operator has the precedence of
// the first, so that nothing around it changes.
template <typename A, typename Kind>
struct Half
{
    A&& left;
    int id;
};

#define QN740_OPERATOR(Kind, op, other)                                                            \
    struct Kind                                                                                    \
    {                                                                                              \
        int id;                                                                                    \
        explicit Kind(int number)                                                                  \
            : id(number)                                                                           \
        {                                                                                          \
        }                                                                                          \
    };                                                                                             \
    template <typename A>                                                                          \
    Half<A, Kind> operator op(A&& left, Kind site)                                                 \
    {                                                                                              \
        return {static_cast<A&&>(left), site.id};                                                  \
    }                                                                                              \
    template <typename A, typename B>                                                              \
    auto operator op(Half<A, Kind> half, B&& right)                                                \
        ->std::decay_t<decltype(static_cast<A&&>(half.left) op static_cast<B&&>(right))>           \
    {                                                                                              \
        using R = std::decay_t<decltype(static_cast<A&&>(half.left) op static_cast<B&&>(right))>;  \
        if (on(half.id)) {                                                                         \
            return other;                                                                          \
        }                                                                                          \
        return static_cast<R>(static_cast<A&&>(half.left) op static_cast<B&&>(right));             \
    }
#define QN740_SWAP(Kind, op, other)                                                                \
    QN740_OPERATOR(                                                                                \
        Kind, op, static_cast<R>(static_cast<A&&>(half.left) other static_cast<B&&>(right)))

QN740_SWAP(LessToLessEqual, <, <=)
QN740_SWAP(LessToGreaterEqual, <, >=)
QN740_SWAP(LessEqualToLess, <=, <)
QN740_SWAP(LessEqualToGreater, <=, >)
QN740_SWAP(GreaterToGreaterEqual, >, >=)
QN740_SWAP(GreaterToLessEqual, >, <=)
QN740_SWAP(GreaterEqualToGreater, >=, >)
QN740_SWAP(GreaterEqualToLess, >=, <)
QN740_SWAP(EqualToNotEqual, ==, !=)
QN740_SWAP(NotEqualToEqual, !=, ==)
QN740_SWAP(TimesToDivide, *, /)
QN740_SWAP(DivideToTimes, /, *)
QN740_SWAP(ModuloToTimes, %, *)
QN740_SWAP(MinusToPlus, -, +)

// "+" also joins texts, which have no "-": there the right part is left out, or else the left one.
template <typename R, typename A, typename B>
R lessOrOnly(A&& left, B&& right)
{
    if constexpr (std::is_arithmetic_v<R> || std::is_pointer_v<R>) {
        return static_cast<R>(left - right);
    } else if constexpr (std::is_convertible_v<A&&, R>) {
        return R(static_cast<A&&>(left));
    } else {
        return R(static_cast<B&&>(right));
    }
}
QN740_OPERATOR(
    PlusToMinus, +, (lessOrOnly<R>(static_cast<A&&>(half.left), static_cast<B&&>(right))))

#undef QN740_SWAP
#undef QN740_OPERATOR

} // namespace mut
