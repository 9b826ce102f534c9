// What the certificate tab keeps from one run to the next. Keys are kept by their paths alone.
#include "workbench/tabs/da/CertifGenDA.h"
#include "workbench/tabs/da/CertificatePane.h"
#include "workbench/tabs/da/DaRows.h"

namespace da_row = workbench::da_row;

namespace
{

struct Saved {
    const char *key;
    QLatin1String row;
};

const Saved kChoices[] = {
    {"Device family", da_row::kFamily},
    {"Role", da_row::kRole},
    {"Usage", da_row::kUsage},
    {"Lifecycle", da_row::kLifecycle},
};
const Saved kTexts[] = {
    {"Lifecycle number", da_row::kLifecycleNumber},
    {"OEM constraint", da_row::kConstraint},
    {"SoC class", da_row::kClass},
    {"SoC identifier", da_row::kIdentifier},
    {"Issuer key file", da_row::kIssuer},
    {"Subject key file", da_row::kSubject},
    {"Upper certificate file", da_row::kUpper},
    {"Output certificate file", da_row::kOutput},
};
const QLatin1String kPermissionsKey("Permissions");

}  // namespace

void CertifGenDA::save(workbench::SavedGroup &group) const
{
    for (const Saved &choice : kChoices) {
        // What stands first in the box of families is in the language of the window.
        const bool isAny =
            choice.row == da_row::kFamily && form()->choice(choice.row)->currentIndex() == 0;
        group.set(QLatin1String(choice.key),
                  isAny ? QStringLiteral("Any (bits by number)") : form()->text(choice.row));
    }
    for (const Saved &text : kTexts) {
        group.set(QLatin1String(text.key), form()->text(text.row));
    }
    group.set(kPermissionsKey, certif::maskText(m_permissions->bits()));
}

void CertifGenDA::restore(const workbench::SavedGroup &group)
{
    for (const Saved &choice : kChoices) {
        QComboBox *const box = form()->choice(choice.row);
        // An entry that is gone, such as a family's, is the first.
        box->setCurrentIndex(qMax(0, box->findText(group.text(QLatin1String(choice.key)))));
    }
    for (const Saved &text : kTexts) {
        form()->setText(text.row, group.text(QLatin1String(text.key)));
    }
    m_permissions->setBits(certif::maskBits(group.text(kPermissionsKey)));
}

void CertifGenDA::restoreFiles(const workbench::SavedGroup & /*group*/)
{
    showPreview();
}

void CertifGenDA::clear()
{
    FormTab::clear();
    // Its class went with the texts.
    form()->choice(da_row::kFamily)->setCurrentIndex(0);
    m_permissions->setBits({});
    clearPanes();
    showPreview();
}

void CertifGenDA::clearPanes()
{
    m_certificate->field()->setPath({});
    m_certificate->chain()->clear();
}
