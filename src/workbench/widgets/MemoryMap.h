#pragma once
#include "workbench/widgets/MemoryMapLayout.h"
#include "workbench/widgets/MemoryMapPainter.h"

#include <QWidget>

#include <map>

namespace workbench
{

/// A picture of the address space that is used. Pointer and arrow keys go over its blocks; the
/// chosen one has a frame. Screen readers get the same in words; the table beside it has the rows.
class MemoryMap : public QWidget
{
    Q_OBJECT

public:
    /// @param name   its object name, such as "sfi_firmwareInfo_map"
    /// @param title  what its accessible name begins with, such as "Firmware information"
    MemoryMap(const QString &name, const QString &title, QWidget *parent);

    /// Shows other blocks, none of them chosen. Without blocks the map hides itself.
    void setContents(MapContents contents);
    [[nodiscard]] const MapContents &contents() const { return m_contents; }

    /// Chooses the block that a line of the table tells of; -1 or an unknown line: none.
    /// Sends no signal.
    void selectRow(int row);

    /// The chosen block, an index into the contents; or -1.
    [[nodiscard]] int selectedBlock() const;

    /// The line below the picture: the block in question, or else what is marked.
    [[nodiscard]] QString words() const;

    /// The words of the marks by the line of the table that they concern.
    [[nodiscard]] std::map<int, QString> marksOfRows() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The user chose a block that the table tells of.
    void rowChosen(int row);
    /// The user asked for a block of another group, by a click or the Enter key.
    void groupChosen(int group, int number);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;

private:
    [[nodiscard]] MapRooms rooms() const;
    [[nodiscard]] int heightBesideStrip() const;
    const MapPicture &picture() const;
    [[nodiscard]] const MapBlock &blockAt(int place) const;
    [[nodiscard]] int placeUnder(const QPoint &point) const;
    [[nodiscard]] QString wordsOf(int place) const;
    [[nodiscard]] QFont addressFont() const;
    void choose(int place);
    void ask(int place);
    void tellReaders();

    QString m_title;
    MapContents m_contents;
    int m_selected = -1;  ///< place
    int m_hovered = -1;   ///< place
    mutable MapPicture m_picture;
    mutable double m_pictureWidth = -1;
    mutable double m_picturePixel = 0;
};

}  // namespace workbench
