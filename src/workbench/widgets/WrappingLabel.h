#pragma once
#include <QLabel>

namespace workbench
{

/// A label that breaks its text anywhere when words don't fit: a file name of 255 characters must
/// not make a dialog wider than the screen. Shows the text as written.
class WrappingLabel : public QLabel
{
    Q_OBJECT

public:
    /// Pixels, for a usual sentence with a usual name.
    static constexpr int kUsualWidth = 480;

    /// @param widest  pixels; longer lines are broken
    explicit WrappingLabel(const QString &text, QWidget *parent = nullptr,
                           int widest = kUsualWidth);

    QSize sizeHint() const override;  ///< one line, or as many as the text needs at its widest
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_widest;
};

}  // namespace workbench
