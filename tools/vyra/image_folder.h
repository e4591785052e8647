// The numbered images of a directory: image_0001.png and so on.
#pragma once

#include <cstdint>
#include <string>

#include "files.h"

namespace vyra_tool {

class Image_folder {
public:
    // The name of an image's file without the directory.
    static std::string file_name(std::uint64_t number, const std::string& extension);

    // Numbers go on behind the highest that any image of the directory has, unfinished ones and those of other formats
    // included: gaps are not filled. The extension has its dot.
    Image_folder(std::string directory, std::string extension);

    struct Place {
        std::uint64_t number;
        New_file file;
    };
    // The place of the next image. A number that another program has taken meanwhile is passed over.
    Place next();

    std::string path(std::uint64_t number) const;

private:
    std::string directory_;
    std::string extension_;
    std::uint64_t number_ = 0;  // given last
};

}  // namespace vyra_tool
