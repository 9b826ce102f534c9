#include "workbench/forms/FormTab.h"

#include "crypto/service/RandomFiles.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSplitter>

namespace workbench
{

namespace
{

struct RandomFileTexts {
    int bytes;
    const char *made;
    const char *failed;
};

// The spelling is what users of all versions know.
constexpr RandomFileTexts kKey{16, "Encrytpion Key file successfully created",
                               "Encrytpion Key File Generation Failed !!"};
constexpr RandomFileTexts kNonce{12, "Nonce file successfully created",
                                 "Nonce File Generation Failed !!"};

}  // namespace

FormTab::FormTab(const TabName &name, QWidget *page, FormContext &context)
    : Tab(name, page, context), m_form(new RowForm(key(), new QSplitter(page)))
{
    connect(m_form, &RowForm::buttonPressed, this, &FormTab::press);
}

void FormTab::press(const QString &row, const QString &role)
{
    if (role == QLatin1String("open")) {
        choosePath(row);
    } else if (role == QLatin1String("folder")) {
        chooseFolder(row);
    } else if (role == QLatin1String("generate")) {
        makeRandomFile(row);
    }
}

void FormTab::takeShared(SharedField field, const QString &path)
{
    m_form->takeShared(field, path);
}

void FormTab::putPath(const QString &row, const QString &path)
{
    if (const auto shared = m_form->row(row)->shared) {
        context().share(*shared, path);
    } else {
        m_form->choosePath(row, path);
    }
}

void FormTab::whenPathSettles(const QString &row, std::function<void(const QString &)> show)
{
    connect(m_form, &RowForm::pathSettled, this,
            [this, row, show = std::move(show)](const QString &settled, bool isTyped) {
                if (settled == row && !m_isRestoring) {
                    const QString path = m_form->text(row);
                    show(isTyped || QFileInfo(path).isFile() ? path : QString());
                }
            });
}

void FormTab::saveTexts(SavedGroup &group, std::span<const SavedText> texts) const
{
    for (const SavedText &each : texts) {
        group.set(QLatin1String(each.key), m_form->text(each.row));
    }
}

void FormTab::restoreTexts(const SavedGroup &group, std::span<const SavedText> texts)
{
    const QScopedValueRollback<bool> restoring(m_isRestoring, true);
    for (const SavedText &each : texts) {
        m_form->setText(each.row, group.text(QLatin1String(each.key)));
    }
}

void FormTab::choosePath(const QString &row)
{
    const QString path = chooseFile(page(), context().lastFolder, m_form->row(row)->filter);
    if (!path.isEmpty()) {
        putPath(row, path);
    }
}

void FormTab::chooseFolder(const QString &row)
{
    const QString folder =
        QFileDialog::getExistingDirectory(page(), tr("Select folder"), context().lastOutputFolder);
    if (!folder.isEmpty()) {
        context().lastOutputFolder = folder;
        putPath(row, folder + '/' + m_form->row(row)->defaultName);
    }
}

void FormTab::makeRandomFile(const QString &row)
{
    const RandomFileTexts &texts =
        m_form->row(row)->randomFile == RandomFile::Nonce ? kNonce : kKey;
    const QString path = QFileDialog::getSaveFileName(
        page(), tr("Select file name"), context().lastOutputFolder, tr("bin files (*.bin)"));
    if (path.isEmpty()) {
        return;
    }
    if (const auto made = crypto::makeRandomFile(path, texts.bytes); !made) {
        showBox(page(), BoxKind::Error,
                QLatin1String(texts.failed) + '\n' + QString::fromStdString(made.error().text));
        return;
    }
    context().lastOutputFolder = QFileInfo(path).absolutePath();
    putPath(row, path);
    showBox(page(), BoxKind::Success, QLatin1String(texts.made));
}

}  // namespace workbench
