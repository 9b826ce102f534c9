#pragma once
#include "device/DataGateWay.h"
#include "device/ObEditor.h"

#include "workbench/forms/DeviceLock.h"
#include "workbench/forms/Tab.h"
#include "workbench/tabs/ob/ObForm.h"

#include <QPointer>
#include <QString>

#include <memory>

namespace workbench
{

/// The option-bytes tab at work: devices, edits, CSV files.
class ObTab : public Tab
{
    Q_OBJECT

public:
    ObTab(const TabName &name, QWidget *page, FormContext &context);
    ~ObTab() override;

    /// A change of device by the lock keeps what was set for the device before, until the box
    /// returns to it.
    void lockDevice(bool lock) override;

    [[nodiscard]] ObForm *form() const { return m_form; }
    [[nodiscard]] const device::ObEditor &editor() const { return m_editor; }

    /// Rebuilds the tab for an entry of the box; what was set for the old device is lost.
    void changeEntry(int index);
    /// Reads a device. A missing or bad one is reported, and the tab stays empty.
    void loadDevice(unsigned int id, int core);
    void edit(device::FieldId id, const QString &text);
    /// Takes over what the field widget with the keyboard focus shows; a bit's button flips first.
    void editFocused();
    void chooseOutput();
    void generate();
    void upload();
    void useInSfi();

private:
    /// What the tab held for an entry of the box.
    struct Held {
        int index = 0;
        device::ObEditor editor;
        QString path;
        QString writtenPath;
    };

    [[nodiscard]] int index() const;
    void show(const Held &held);
    void writeCsv(const device::ObOutput &output);
    void loadCsv(const QByteArray &content);
    void reportLeftFields(const device::UploadPlan &plan) const;
    void setWritten(const QString &path);

    QPointer<ObForm> m_form;
    DeviceLock m_lock;
    Held m_otherPanel;                    ///< left behind when the lock changed the device
    std::unique_ptr<DataGateWay> parser;  ///< of the loaded device
    device::ObEditor m_editor;
    QString m_proposedPath;
    QString m_writtenPath;  ///< CSV file that holds what the form shows; else empty
};

}  // namespace workbench
