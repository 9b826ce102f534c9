#pragma once
#include <cstdint>
#include <vector>

/// One image-generation tab.
struct ImgTool {
    int saveStatus =
        0;  ///< 2 at creation under `-ng`, 1 after a successful save, 0 after a failed one
};

/// What the template tabs keep for the life of the form.
class Obkey
{
public:
    std::uint8_t imageGenCount = 0;  ///< image-generation tabs created so far
    std::vector<ImgTool> imgTools;   ///< one for each of them, in the order of creation
};
