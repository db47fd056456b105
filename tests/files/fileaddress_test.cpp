#include "files/fileaddress.h"

#include "files/filename.h"
#include "tests/testprogram.h"

#include <QSysInfo>

/// Names of files as addresses, and back.
class FileAddressTest : public QObject {
    Q_OBJECT

private slots:
    void nameOf_data();
    void nameOf();
    void anyNameComesBack();
};

void FileAddressTest::nameOf_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QByteArray>("name"); // empty: it is no address of a file here
    const auto row = [](const char *address, const char *name) {
        QTest::newRow(address) << QByteArray(address) << QByteArray(name);
    };
    row("file:///a.txt", "/a.txt");
    row("file:///a%20b.txt", "/a b.txt");
    row("file:///%83e", "/\203e");
    row("file:///%E3%81%82", "/\343\201\202");
    row("file:/a.txt", "/a.txt");
    row("file://localhost/a.txt", "/a.txt");
    row("file://elsewhere.example/a.txt", "");
    row("file:///a%00b", "");
    row("file://", "");
    row("file:", "");
    row("file:a.txt", "");
    row("https://localhost/a.txt", "");
    row("/a.txt", "");
    row("", "");
    QTest::newRow("this machine") << "file://" + QSysInfo::machineHostName().toUtf8() + "/a"
                                  << QByteArray("/a");
}

void FileAddressTest::nameOf()
{
    QFETCH(QByteArray, address);
    QFETCH(QByteArray, name);
    const auto found = FileAddress::fileName(address);
    QCOMPARE(found.has_value(), !name.isEmpty());
    QCOMPARE(FileName::toBytes(found.value_or(QString())), name);
}

void FileAddressTest::anyNameComesBack()
{
    QByteArray name = "/";
    for (int byte = 1; byte < 256; ++byte)
        name += char(byte);
    const QString text = FileName::fromBytes(name);
    QCOMPARE(FileAddress::fileName(FileAddress::of(text).toLatin1()), std::optional(text));
}

REGISTER_TEST(runCoreTest<FileAddressTest>)
#include "fileaddress_test.moc"
