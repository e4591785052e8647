// The main function of the test programs: a run in which no test ran proves nothing and fails, whether a filter, a
// shard or a repetition of the environment's left none.
#include <gtest/gtest.h>

#include <cstdio>

namespace {

class Test_counter : public testing::EmptyTestEventListener {
public:
    explicit Test_counter(int& tests) : tests_(tests) {}
    void OnTestStart(const testing::TestInfo& /*test*/) override { ++tests_; }

private:
    int& tests_;
};

}  // namespace

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    int tests = 0;
    testing::UnitTest::GetInstance()->listeners().Append(new Test_counter(tests));
    const int failed = RUN_ALL_TESTS();
    if (tests == 0) {
        std::fprintf(stderr, "no test ran\n");
    }
    return tests == 0 ? 1 : failed;
}
