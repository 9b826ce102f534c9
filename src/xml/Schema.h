#pragma once
#include "xml/Bounds.h"

#include <memory>

namespace xml
{

/// Why a file isn't valid.
struct Fault {
    QString text;        ///< one plain sentence, without Qt's markup
    qint64 line = -1;    ///< from 1; -1 when there is none
    qint64 column = -1;  ///< from 1; -1 when there is none
};

/// An XML Schema (W3C, 1.0), loaded once. Neither the schema nor a file under validation can make
/// it open a file or an address.
class Schema
{
public:
    /// Loads an .xsd file of at most 1 MiB. One that includes or imports others is not valid.
    /// @return NotFound, NotRegular, CannotOpen, ReadFailed or TooLarge for the file; BadValue with
    ///         line, column and Qt's words when it is no valid schema
    static Result<Schema> load(const QString &path);

    /// The same from bytes.
    static Result<Schema> fromBytes(const QByteArray &bytes);

    Schema(Schema &&) noexcept;
    Schema &operator=(Schema &&) noexcept;
    ~Schema();

    /// Validates a file's bytes, after checkBounds.
    /// @return nothing, or the last fault that the validator told
    tl::expected<void, Fault> validate(const QByteArray &bytes, const Limits &limits = {}) const;

private:
    struct State;
    explicit Schema(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}  // namespace xml
