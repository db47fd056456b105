#include "platform/filerequest.h"

#include "files/fileaddress.h"

#include <QStringList>

FileRequests requestsByAddresses(const QList<QByteArray> &addresses)
{
    FileRequests requests;
    QStringList elsewhere;
    for (const QByteArray &address : addresses) {
        if (const auto fileName = FileAddress::fileName(address))
            requests << FileRequest{ *fileName, FileRequest::From::Desktop };
        else
            elsewhere << QString::fromUtf8(address);
    }
    if (!elsewhere.isEmpty())
        requests << FileRequest{ elsewhere.join(u'\n'), FileRequest::From::Elsewhere };
    return requests;
}
