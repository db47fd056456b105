#include "platform/text/textcodec.h"

#include <QTest>

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
QString decoded(const TextCodec &codec, const QByteArray &bytes)
{
    const QString text = codec.toUnicode(bytes);
    return text.size() == 1 && !text[0].isSurrogate() ? text : QString();
}

} // namespace

/// The Japanese tables against the system's own.
class JisTablesTest : public QObject {
    Q_OBJECT

private slots:
    void agreesWithSystem_data();
    void agreesWithSystem();
    void writesWhatTheSystemWrites();
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
    const TextCodec *c = TextCodec::codecForName(codec);
    const SystemConverter converter("UTF-16LE", system);
    QVERIFY(converter.isOpen());
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0x80 >> (codec == "SJIS" ? 1 : 0); second < 0x100; ++second) {
            QByteArray bytes = prefix;
            bytes += static_cast<char>(first);
            bytes += static_cast<char>(second);
            const QString ours = decoded(*c, bytes);
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
    const TextCodec *codec = TextCodec::codecForName("SJIS");
    const SystemConverter converter("CP932", "UTF-16LE");
    QVERIFY(converter.isOpen());
    int compared = 0;
    for (int unit = 0x80; unit < 0x10000; ++unit) {
        const QString text(QChar(static_cast<char16_t>(unit)));
        const QByteArray ours = codec->fromUnicode(text);
        if (codec->toUnicode(ours) != text || text[0].isSurrogate())
            continue;
        QVERIFY2(ours == converter.convert(utf16Bytes(text)), ours.toHex());
        ++compared;
    }
    QVERIFY(compared > 9000);
}

QTEST_APPLESS_MAIN(JisTablesTest)
#include "jistables_test.moc"
