// Any bytes as the settings file: read, written with what was read, and read again.
#include "FuzzSupport.h"

#include "app/SettingsFile.h"
#include "support/ScratchFolder.h"

#include <string_view>

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {"[Window]\nSize=@Size(800 600)\npath=/home/a\nSettings\\Pad=false\nSettings\\logLine=\n"
          "SFI\\list=a, \"b,c\", d\nSFI\\edit=\"x;\\x1f600\\n\"\n",
          "[General]\nsize=3\n[Window]\nsize=@Invalid()\nSettings\\Pad=@ByteArray(\\0a)\n",
          "[Window]\nSSP\\v=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x1)\nA=1\n",
          "[Window]\nA\\B\\C=1\n"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScratchFolder folder;
    const QString path = folder.file(QStringLiteral("Settings.ini"),
                                     std::string_view(reinterpret_cast<const char *>(data), size));
    const auto read = app::readSettings(path);
    require(read || read.error().code == files::ErrorCode::BadValue);
    const app::SavedState state = read.value_or(app::SavedState());
    if (!app::writeSettings(path, state)) {
        return 0;
    }
    const auto again = app::readSettings(path);
    require(again && again->window.paddingFF == state.window.paddingFF);
    require(again->window.lastFolder == state.window.lastFolder);
    return 0;
}
