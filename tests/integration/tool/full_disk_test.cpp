// A disk without room, which a limit on the size of files stands for.
#include <sys/resource.h>

#include <csignal>

#include "files.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Full_disk_test : public Tool_test {
protected:
    Full_disk_test() : signal_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit small{1000, limit_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }

    ~Full_disk_test() override
    {
        setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    rlimit limit_{};
    void (*signal_)(int);
};

TEST_F(Full_disk_test, keeps_the_file_that_was_to_be_replaced)
{
    vyra_tool::write_file(path("x"), {1, 2, 3}, vyra_tool::Existing::keep);
    try {
        vyra_tool::write_file(path("x"), Bytes(2000), vyra_tool::Existing::replace);
        ADD_FAILURE() << "there was room";
    } catch (const vyra_tool::Failure& failure) {
        EXPECT_EQ(failure.what(), "cannot write the file \"" + path("x") + "\": File too large");
        EXPECT_EQ(failure.advice(), "make room on the disk, or choose another one");
    }
    EXPECT_EQ(read_bytes(path("x")), (Bytes{1, 2, 3}));
    EXPECT_FALSE(vyra_tool::name_exists(path("x.part")));
}

}  // namespace
}  // namespace tool_tests
