#include "tests/testprogram.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <cstdio>

namespace {

QMap<QByteArray, TestProgram::Run> &tests()
{
    static QMap<QByteArray, TestProgram::Run> all;
    return all;
}

} // namespace

TestProgram::TestProgram(const char *sourceFile, Run run)
{
    tests().insert(QFileInfo(QString::fromUtf8(sourceFile)).completeBaseName().toUtf8(), run);
}

int TestProgram::main(int argc, char **argv)
{
    if (const Run run = argc > 1 ? tests().value(argv[1]) : nullptr) {
        std::copy(argv + 2, argv + argc + 1, argv + 1);
        return run(argc - 1, argv);
    }
    std::fputs("The first argument is the name of a test:\n", stderr);
    for (const QByteArray &name : tests().keys())
        std::fprintf(stderr, "    %s\n", name.constData());
    return 2;
}

int main(int argc, char **argv)
{
    return TestProgram::main(argc, argv);
}
