#include "Files.h"

#include "certif/FaultText.h"

namespace adac
{

namespace
{

tl::unexpected<files::Error> withPath(const std::string &path, const files::Error &error)
{
    return files::fail(error.code, certif::faultText(QFile::decodeName(path.c_str()), error));
}

}  // namespace

files::Result<QByteArray> readFile(const std::string &path)
{
    auto content = certif::readText(QFile::decodeName(path.c_str()));
    if (!content) {
        return withPath(path, content.error());
    }
    return content;
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
