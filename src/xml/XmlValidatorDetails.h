#pragma once
#include <QAbstractMessageHandler>
#include <QSourceLocation>
#include <QString>

/// Keeps the last message of a schema or its validator; the ones before are forgotten.
class XmlValidatorDetails : public QAbstractMessageHandler
{
public:
    [[nodiscard]] QtMsgType type() const { return m_type; }
    /// As Qt words it, with its markup.
    [[nodiscard]] QString description() const { return m_description; }
    /// Line and column from 1, -1 where Qt tells none.
    [[nodiscard]] QSourceLocation location() const { return m_location; }

protected:
    void handleMessage(QtMsgType type, const QString &description, const QUrl &identifier,
                       const QSourceLocation &location) override;

private:
    QtMsgType m_type = QtDebugMsg;
    QString m_description;
    QSourceLocation m_location;
};
