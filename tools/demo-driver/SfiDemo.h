#pragma once

#include "Hands.h"

#include <QString>

namespace demo
{

/// What the driver was asked for on its command line.
struct Request {
    QString dataFolder;  ///< holds firmware.hex, firmware.bin, key.bin, nonce.bin, option-bytes.csv
    QString outputFolder;  ///< gets out.sfi and window.png, or the pictures of the script
    QString script;        ///< steps for pictures of the help pages instead, or empty
    bool isDark = false;   ///< show the window in a dark palette, as a dark desktop would
};

/// Fills the SFI tab of the window over the demo inputs, generates, and takes a picture of the
/// window.
class SfiDemo
{
public:
    SfiDemo(QMainWindow &window, Request request);

    /// @return empty when the image was written and read back; else what went wrong, one line
    QString run();

private:
    QString judge();
    QString data(const char *file) const;

    Request m_request;
    Hands m_hands;
};

}  // namespace demo
