#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

/// A firmware image and the signature behind it. The setters and `Preparation::signECDSA` come
/// first, in any order but that `signECDSA` comes last, then `createSignedImage`. The key stays in
/// the object from one to the other, because the file's size is signed, too, and is known only
/// then; it is wiped after use and with the object.
class SignedImage
{
public:
    SignedImage();
    ~SignedImage();
    SignedImage(const SignedImage &) = delete;
    SignedImage &operator=(const SignedImage &) = delete;

    /// @param kind  goes into the trailer as it is
    void setSigSize(unsigned char kind);
    /// @param version  0 to 255; `signECDSA` refuses others
    void setSigImgVer(unsigned int version);
    /// Chooses the footer that this program knows.
    void setSigImgFooter();
    /// The bytes to sign: the one segment of the record. They are remembered by size and digest, so
    /// the record may go.
    void setSigImgBin(FileData **image);

    /// Signs, verifies, and writes the file through the safe writer: the bytes, then the trailer.
    /// @param bytes  the whole first segment of the input; must begin with the image
    /// @return false after a report, and then an old file is as it was
    bool createSignedImage(QString path, QByteArray bytes);

private:
    friend class Preparation;
    struct State;

    /// Takes the key. @param display  gets the reports from here on
    files::Result<void> takeKey(const QString &keyPath, const char *phrase,
                                std::function<void(int, const wchar_t *)> display);
    [[nodiscard]] files::Result<QByteArray> build(const QByteArray &bytes) const;

    std::unique_ptr<State> m_state;
};
