#include "codec/textcodec.h"
#include "tests/codec/codecnamed.h"
#include "tests/codec/nastybytes.h"
#include "tests/codec/shorttexts.h"
#include "tests/testprogram.h"

#include <QFile>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QTest>

#include <functional>

#include <iconv.h>

namespace {

/// The C library's converter: tables made by other hands.
class SystemConverter {
public:
    SystemConverter(const char *to, const char *from)
        : m_converter(iconv_open(to, from))
    {
    }
    ~SystemConverter() { iconv_close(m_converter); }
    Q_DISABLE_COPY_MOVE(SystemConverter)

    bool isOpen() const { return m_converter != reinterpret_cast<iconv_t>(-1); }

    /// Null where it finds anything wrong.
    QByteArray convert(QByteArray bytes) const
    {
        QByteArray converted(16, '\0');
        char *in = bytes.data();
        char *out = converted.data();
        auto inLeft = static_cast<size_t>(bytes.size());
        auto outLeft = static_cast<size_t>(converted.size());
        iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
        const size_t irreversible = iconv(m_converter, &in, &inLeft, &out, &outLeft);
        if (irreversible == static_cast<size_t>(-1) || inLeft != 0)
            return {};
        converted.truncate(out - converted.data());
        return converted;
    }

private:
    iconv_t m_converter;
};

QByteArray utf16Bytes(QStringView text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

QString textOf(const QByteArray &utf16)
{
    return QString(reinterpret_cast<const QChar *>(utf16.constData()), utf16.size() / 2);
}

/// The one character that bytes stand for; null where they are not exactly one.
QString decodedOne(const TextCodec &codec, const QByteArray &bytes)
{
    const QString text = decoded(codec, bytes);
    return text.size() == 1 && !text[0].isSurrogate() ? text : QString();
}

/// Where a code has the character of a pointer; empty where it has no place for it.
using Place = std::function<QByteArray(int pointer)>;

QMap<int, char16_t> standardTable(const QString &name)
{
    QMap<int, char16_t> characters;
    QFile file(QStringLiteral(TABLES_DIR "/index-%1.txt").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return characters;
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        const QByteArrayList fields = line.trimmed().split(' ');
        if (!line.startsWith('#'))
            characters.insert(fields[0].toInt(), static_cast<char16_t>(fields[1].toUShort(nullptr, 16)));
    }
    return characters;
}

} // namespace

/// The Japanese tables against the system's own and the standard's.
class JisTablesTest : public QObject {
    Q_OBJECT

private slots:
    void agreesWithSystem_data();
    void agreesWithSystem();
    void writesWhatTheSystemWrites();
    void agreesWithTheStandard_data();
    void agreesWithTheStandard();
};

void JisTablesTest::agreesWithSystem_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("system");
    QTest::addColumn<QByteArray>("prefix");
    QTest::newRow("Shift-JIS") << QByteArray("SJIS") << QByteArray("CP932") << QByteArray();
    QTest::newRow("EUC") << QByteArray("eucJP") << QByteArray("EUC-JP-MS") << QByteArray();
    QTest::newRow("EUC, JIS X 0212") << QByteArray("eucJP") << QByteArray("EUC-JP-MS") << QByteArray("\x8F");
}

void JisTablesTest::agreesWithSystem()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, system);
    QFETCH(QByteArray, prefix);
    const TextCodec *c = &codecNamed(codec);
    const SystemConverter converter("UTF-16LE", system);
    QVERIFY(converter.isOpen());
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0x80 >> (codec == "SJIS" ? 1 : 0); second < 0x100; ++second) {
            QByteArray bytes = prefix;
            bytes += static_cast<char>(first);
            bytes += static_cast<char>(second);
            const QString ours = decodedOne(*c, bytes);
            const QString theirs = textOf(converter.convert(bytes));
            // The system has user-defined characters in rows 89 to 92, and names the broken bar otherwise.
            const bool isRow89To92 = codec == "eucJP" && prefix.isEmpty() && first >= 0xF9 && first <= 0xFC;
            const bool isBrokenBar = theirs == QStringLiteral("\uFFE4") && prefix.size() == 1;
            if (!isRow89To92 && !isBrokenBar && theirs.size() <= 1)
                QVERIFY2(ours == theirs, bytes.toHex());
        }
    }
}

void JisTablesTest::writesWhatTheSystemWrites()
{
    const TextCodec *codec = &codecNamed("SJIS");
    const SystemConverter converter("CP932", "UTF-16LE");
    QVERIFY(converter.isOpen());
    int compared = 0;
    for (int unit = 0x80; unit < 0x10000; ++unit) {
        const QString text(QChar(static_cast<char16_t>(unit)));
        const QByteArray ours = encoded(*codec, text);
        if (decodedOne(*codec, ours) != text || text[0].isSurrogate())
            continue;
        QVERIFY2(ours == converter.convert(utf16Bytes(text)), ours.toHex());
        ++compared;
    }
    QVERIFY(compared > 9000);
}

void JisTablesTest::agreesWithTheStandard_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("table");
    QTest::addColumn<Place>("place");
    const auto inShiftJis = [](int pointer) {
        const int lead = pointer / 188;
        const int trail = pointer % 188;
        return bytesFrom({ lead + (lead < 0x1F ? 0x81 : 0xC1), trail + (trail < 0x3F ? 0x40 : 0x41) });
    };
    const auto in94s = [](QByteArray before, int base, QByteArray behind) {
        return [=](int pointer) {
            const bool isInPlane = pointer < 94 * 94;
            const QByteArray code = bytesFrom({ pointer / 94 + base, pointer % 94 + base });
            return isInPlane ? before + code + behind : QByteArray();
        };
    };
    const QString first = QStringLiteral("jis0208");
    const QString second = QStringLiteral("jis0212");
    QTest::newRow("Shift-JIS") << QByteArray("SJIS") << first << Place(inShiftJis);
    QTest::newRow("EUC") << QByteArray("eucJP") << first << Place(in94s("", 0xA1, ""));
    QTest::newRow("EUC, JIS X 0212") << QByteArray("eucJP") << second << Place(in94s("\x8F", 0xA1, ""));
    QTest::newRow("JIS") << QByteArray("JIS7") << first << Place(in94s("\x1B$B", 0x21, "\x1B(B"));
    QTest::newRow("JIS, JIS X 0212") << QByteArray("JIS7") << second
                                     << Place(in94s("\x1B$(D", 0x21, "\x1B(B"));
}

/// Every pointer of the WHATWG tables, both ways. What that standard writes for a character with several
/// codes is the first one of the first table; in Shift-JIS never rows 89 to 92.
void JisTablesTest::agreesWithTheStandard()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, table);
    QFETCH(Place, place);
    const TextCodec *c = &codecNamed(codec);
    const QMap<int, char16_t> characters = standardTable(table);
    QVERIFY(characters.size() > 6000);
    QHash<char16_t, QByteArray> written;
    for (const auto &[pointer, character] : characters.asKeyValueRange()) {
        const QByteArray bytes = place(pointer);
        if (bytes.isEmpty())
            continue;
        QCOMPARE(decodedOne(*c, bytes), QString(QChar(character)));
        const bool isReadOnly = codec == "SJIS" && pointer >= 8272 && pointer <= 8835;
        if (!isReadOnly && !written.contains(character))
            written.insert(character, bytes);
    }
    const QList<char16_t> inFirst = standardTable(QStringLiteral("jis0208")).values();
    const QSet<char16_t> before(inFirst.begin(), inFirst.end());
    for (const auto &[character, bytes] : written.asKeyValueRange()) {
        if (table == QLatin1StringView("jis0208") || !before.contains(character))
            QCOMPARE(encoded(*c, QString(QChar(character))).toHex(), bytes.toHex());
    }
}

REGISTER_TEST(runPlainTest<JisTablesTest>)
#include "jistables_test.moc"
