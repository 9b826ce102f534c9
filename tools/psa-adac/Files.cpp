#include "Files.h"

#include "files/base/FileReader.h"

namespace adac
{

namespace
{

tl::unexpected<files::Error> withPath(const std::string &path, const files::Error &error)
{
    return files::fail(error.code, path + ": " + error.text);
}

}  // namespace

files::Result<QByteArray> readFile(const std::string &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, QFile::decodeName(path.c_str())); !opened) {
        return withPath(path, opened.error());
    }
    const auto bytes = files::readAll(file, certif::kMostChainBytes);
    if (!bytes) {
        return withPath(path, bytes.error());
    }
    return QByteArray(reinterpret_cast<const char *>(bytes->span().data()),
                      static_cast<int>(bytes->size()));
}

files::Result<certif::Chain> readChainFile(const std::string &path)
{
    auto chain = certif::readChainFile(QFile::decodeName(path.c_str()));
    if (!chain) {
        return withPath(path, chain.error());
    }
    return chain;
}

}  // namespace adac
