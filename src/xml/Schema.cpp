#include "xml/Schema.h"

#include "files/base/FileReader.h"
#include "xml/XmlText.h"
#include "xml/XmlValidatorDetails.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QTimer>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>

#include <string>

namespace xml
{

using files::ErrorCode;
using files::fail;

namespace
{

/// An answer that says no.
class DeniedReply : public QNetworkReply
{
public:
    DeniedReply(const QNetworkRequest &request, QObject *parent) : QNetworkReply(parent)
    {
        setRequest(request);
        setUrl(request.url());
        setError(ContentAccessDenied, QStringLiteral("files and addresses are not opened"));
        setFinished(true);
        // Who asked waits for the signals in a loop of events, and connects after this returns.
        QTimer::singleShot(0, this, [this] {
            emit errorOccurred(ContentAccessDenied);
            emit finished();
        });
    }

    void abort() override {}

protected:
    qint64 readData(char *, qint64) override { return -1; }
};

/// Qt's XML classes ask a manager for everything that a file names, local paths too; a resolver of
/// addresses is never asked.
class DenyingManager : public QNetworkAccessManager
{
protected:
    QNetworkReply *createRequest(Operation, const QNetworkRequest &request, QIODevice *) override
    {
        return new DeniedReply(request, this);
    }
};

QString plainText(const QString &description)
{
    static const QRegularExpression markup(QStringLiteral("<[^>]*>"));
    return QString(description).remove(markup);
}

Fault lastFault(const XmlValidatorDetails &details)
{
    return {plainText(details.description()), details.location().line(),
            details.location().column()};
}

}  // namespace

struct Schema::State {
    DenyingManager network;
    QXmlSchema schema;
};

Schema::Schema(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Schema::Schema(Schema &&) noexcept = default;
Schema &Schema::operator=(Schema &&) noexcept = default;
Schema::~Schema() = default;

Result<Schema> Schema::load(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected<files::Error>(std::move(opened).error());
    }
    const auto whole = files::readAll(file, Limits().bytes);
    if (!whole) {
        return tl::unexpected<files::Error>(whole.error());
    }
    return fromBytes(QByteArray(reinterpret_cast<const char *>(whole->span().data()),
                                static_cast<int>(whole->size())));
}

Result<Schema> Schema::fromBytes(const QByteArray &bytes)
{
    auto state = std::make_unique<State>();
    XmlValidatorDetails details;
    state->schema.setNetworkAccessManager(&state->network);
    state->schema.setMessageHandler(&details);
    const bool loaded = state->schema.load(bytes) && state->schema.isValid();
    state->schema.setMessageHandler(nullptr);
    if (!loaded) {
        const Fault fault = lastFault(details);
        return fail(ErrorCode::BadValue, "line " + std::to_string(fault.line) + ", column " +
                                             std::to_string(fault.column) + ": " +
                                             fault.text.toStdString());
    }
    return Schema(std::move(state));
}

tl::expected<void, Fault> Schema::validate(const QByteArray &bytes, const Limits &limits) const
{
    if (const auto bounded = checkBounds(bytes, limits); !bounded) {
        return tl::unexpected<Fault>({QString::fromStdString(bounded.error().text), -1, -1});
    }
    XmlValidatorDetails details;
    QXmlSchemaValidator validator(m_state->schema);
    validator.setNetworkAccessManager(&m_state->network);
    validator.setMessageHandler(&details);
    if (!validator.validate(bytes)) {
        return tl::unexpected<Fault>(lastFault(details));
    }
    return {};
}

}  // namespace xml
