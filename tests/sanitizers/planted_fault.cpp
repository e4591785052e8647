// A program with the fault that its argument names, for the test that the sanitizers see it and say so in their own
// way: what is not seen here would not be seen in the library either.
#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

namespace {

volatile int one = 1;
int* volatile lost = nullptr;

void use_after_free()
{
    auto* const freed = new int(one);
    delete freed;
    std::printf("%d\n", *static_cast<volatile int*>(freed));
}

void leak()
{
    lost = new int(one);
    std::printf("%d\n", *lost);
    lost = nullptr;
}

void overflow()
{
    std::printf("%d\n", 0x7FFFFFFF + one);
}

void race()
{
    int shared = 0;
    std::thread other([&] { shared = one; });
    shared = 2;
    other.join();
    std::printf("%d\n", shared);
}

constexpr struct {
    const char* name;
    void (*commit)();
} faults[] = {{"use_after_free", use_after_free}, {"leak", leak}, {"overflow", overflow}, {"race", race}};

}  // namespace

int main(int count, char** arguments)
{
    for (const auto& fault : faults) {
        if (count == 2 && std::strcmp(arguments[1], fault.name) == 0) {
            fault.commit();
            return 0;
        }
    }
    return 2;
}
