#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// Names of files as "file://" addresses, which other programs drop, send and are sent. They carry any bytes.
namespace FileAddress {

/// The address of an absolute name, see FileName.
QString of(const QString &fileName);
/// The absolute name that an address of this machine stands for; nothing for any other text.
std::optional<QString> fileName(QByteArrayView address);

} // namespace FileAddress
