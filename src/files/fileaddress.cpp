#include "files/fileaddress.h"

#include "files/filename.h"

#include <QSysInfo>

namespace {

constexpr QByteArrayView scheme("file:");

bool isThisMachine(QByteArrayView host)
{
    return host.isEmpty() || host == "localhost" || host == QSysInfo::machineHostName().toUtf8();
}

/// What stands behind the machine; nothing where that is another one.
std::optional<QByteArrayView> pathIn(QByteArrayView address)
{
    QByteArrayView path = address.sliced(scheme.size());
    if (path.startsWith("//")) {
        path = path.sliced(2);
        const qsizetype hostEnd = path.indexOf('/');
        if (hostEnd < 0 || !isThisMachine(path.first(hostEnd)))
            return std::nullopt;
        path = path.sliced(hostEnd);
    }
    return path.startsWith('/') ? std::optional(path) : std::nullopt;
}

} // namespace

QString FileAddress::of(const QString &fileName)
{
    return QStringLiteral("file://")
        + QString::fromLatin1(FileName::toBytes(fileName).toPercentEncoding("/"));
}

std::optional<QString> FileAddress::fileName(QByteArrayView address)
{
    if (!address.startsWith(scheme))
        return std::nullopt;
    const auto path = pathIn(address);
    const QByteArray name = path ? QByteArray::fromPercentEncoding(path->toByteArray()) : QByteArray();
    // A name ends at a zero byte, and would be that of another file.
    return name.isEmpty() || name.contains('\0') ? std::nullopt : std::optional(FileName::fromBytes(name));
}
