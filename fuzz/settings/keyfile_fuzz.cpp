#include "settings/keyfile.h"

#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

/// A key file of any bytes comes out as it came in; every value that is set is read back, also from what was
/// written, and changes no line of others. The first byte says where the value ends and the file begins.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype cut = bytes.isEmpty() ? 0 : qMin<qsizetype>(static_cast<uchar>(bytes[0]), bytes.size());
    QString value = QString::fromLatin1(bytes.first(cut));
    if (cut > 2 && cut % 2 == 0) // any UTF-16, lone surrogates too
        value = QString(reinterpret_cast<const QChar *>(bytes.constData()), cut / 2);
    const QByteArray contents = (size % 2 ? "[a]\nb =" : "") + bytes.sliced(cut);

    KeyFile file(contents);
    require(file.contents() == contents);
    const QString group = QStringLiteral("a");
    const QString key = QStringLiteral("b");
    const auto before = file.value(group, key);
    const bool isChanged = file.setValues(group, { { key, value } });
    require(isChanged == (before != value));
    require(isChanged || file.contents() == contents);
    require(file.value(group, key) == value);
    const KeyFile again(file.contents());
    require(again.value(group, key) == value);
    require(again.contents() == file.contents());
    return 0;
}
