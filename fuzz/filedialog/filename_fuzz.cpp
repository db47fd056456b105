#include "filedialog/namefilter.h"
#include "files/filename.h"

#include <cstdlib>

/// Names of any bytes come back from strings, can be shown, and pass the filter that lets all names pass.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    const QString name = FileName::fromBytes(bytes);
    if (FileName::toBytes(name) != bytes)
        std::abort();
    if (FileName::forDisplay(name).size() != name.size())
        std::abort();
    if (!NameFilter(QStringLiteral("*")).matches(name))
        std::abort();
    return 0;
}
