#pragma once
#include "files/base/Records.h"
#include "workbench/forms/FormTab.h"
#include "workbench/forms/PackagePanes.h"

class SignedImage;

namespace workbench
{

/// The tab that signs firmware images of wireless devices.
class SignTab : public FormTab
{
    Q_OBJECT

public:
    SignTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;
    void restoreFiles(const SavedGroup &group) override;

    void generate();
    /// Shows an input image in the first pane; an empty path empties it.
    void displayInput(const QString &path);

    /// Finds the footer, cuts the image there, and hands it to the signed image.
    /// @param out  receives a record that the caller owns (`files::releaseRecord`)
    /// @return false after a box
    bool cutImage(FileData **input, SignedImage **image, FileData **out);

private:
    bool checkVersion();
    void make();
    bool sign(const FileData &input, const QByteArray &keyPem);
    bool showResult(const QByteArray &keyPem);

    PackagePanes m_panes;
    unsigned char m_sizeKind = 0;  ///< never changed
    unsigned int m_version = 0;
};

}  // namespace workbench
