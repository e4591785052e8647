// A host whose process ends while the library is at work: exit_host STATE CLEAN_UP WHEN. The clean-up comes in a
// handler of the program's ("atexit"), when its threads still run, or in a destructor of the plug-in's ("destructor"):
// on Windows the system has ended every other thread by then.
#include <cstdlib>
#include <string>

#include "plug_in.h"

int main(int argc, char** argv)
{
    if (argc != 4 || !begin(argv[1], argv[2])) {
        return 2;
    }
    if (std::string(argv[3]) == "atexit") {
        std::atexit(clean_up);
    }
    return 0;
}
