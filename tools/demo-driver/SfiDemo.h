#pragma once

#include "DialogRobot.h"

#include <QMainWindow>
#include <QString>

namespace demo
{

/// What the driver was asked for on its command line.
struct Request {
    QString dataFolder;  ///< holds firmware.hex, firmware.bin, key.bin, nonce.bin, option-bytes.csv
    QString outputFolder;  ///< gets out.sfi and window.png
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
    template <typename Widget>
    Widget *find(const char *name);
    void click(const char *name);
    void type(const char *name, const QString &text);
    void chooseDevice(const QString &device);
    void showImagePane();
    QString judge();
    QString data(const char *file) const;

    QMainWindow &m_window;
    Request m_request;
    DialogRobot m_robot;
    QString m_missing;  ///< the first widget that wasn't found, hidden or disabled
};

}  // namespace demo
