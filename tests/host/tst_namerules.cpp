// The dialog frame's rules for a core's file and module names.

#include <ipserdes/namerules.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace IPSERDESIP::NameRules;

class TestNameRules : public QObject
{
    Q_OBJECT

private slots:
    // clang-format off
    void fileNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problems"); // empty: the name may be used
        QTest::newRow("plain") << "AZ_az-09.v1" << "";
        QTest::newRow("longest") << QString(255, 'x') << "";
        QTest::newRow("empty") << "" << "The file name is empty.";
        QTest::newRow("dot") << "." << "The file name \".\" must be a plain name, not a path (no \"/\" or \"\\\", and not \".\" or \"..\").";
        QTest::newRow("path") << "a/b\\c" << "must be a plain name";
        QTest::newRow("characters") << "a b\u00e9\nb " << "The file name \"a b\u00e9<U+000A>b \" contains characters that are not allowed (\" \", \"\u00e9\", <U+000A>); use only letters A-Z and a-z, digits, \"_\", \"-\" and \".\".";
        QTest::newRow("too long") << QString(256, 'x') << "The file name is 256 bytes long; a folder name holds at most 255.";
        QTest::newRow("path and characters") << "../a b" << "not a path (no \"/\" or \"\\\", and not \".\" or \"..\").\nThe file name \"../a b\" contains";
    }
    // clang-format on

    void fileNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, problems);
        const QString found = fileNameProblems(name).join('\n');
        QVERIFY2(problems.isEmpty() ? found.isEmpty() : found.contains(problems),
                 qPrintable(found));
    }

    // Icarus Verilog judges every word its parser knows as a keyword of some
    // Verilog generation (its token names), and a few identifiers.
    void moduleNamesAsVerilogJudgesThem()
    {
        QTemporaryDir dir;
        const auto compile = [&](QProcess &iverilog, const QString &name, int index) {
            const QString source = dir.filePath(QString::number(index) + ".v");
            QFile file(source);
            QVERIFY(file.open(QIODevice::WriteOnly)
                    && file.write("module " + name.toUtf8() + "; endmodule\n") > 0);
            file.close();
            iverilog.setProcessChannelMode(QProcess::MergedChannels);
            iverilog.start(IVERILOG_PATH,
                           {"-g2001", "-gno-xtypes", "-v", "-o", "/dev/null", source});
        };
        const auto accepted = [](QProcess &iverilog) { // it takes the module's name
            return iverilog.waitForFinished(-1) && iverilog.exitStatus() == QProcess::NormalExit
                   && iverilog.exitCode() == 0;
        };
        QProcess probe;
        compile(probe, "m", -1);
        QVERIFY(accepted(probe));
        const QString parser =
            QRegularExpression("\\| (\\S+/ivl) ").match(probe.readAll()).captured(1);
        QFile binary(parser);
        QVERIFY2(binary.open(QIODevice::ReadOnly), qPrintable(parser));
        QStringList candidates{"cpri_top", "_x", "a$b", "A9", "9a", "a-b", "$a", "a b", ""};
        const QByteArray tokens = binary.readAll();
        const auto lower = [&](int at) {
            return at < tokens.size() && tokens[at] >= 'a' && tokens[at] <= 'z';
        };
        const auto inWord = [&](int at) {
            return lower(at)
                   || (at < tokens.size()
                       && ((tokens[at] >= '0' && tokens[at] <= '9') || tokens[at] == '_'));
        };
        for (int at = tokens.indexOf("K_"); at >= 0; at = tokens.indexOf("K_", at + 1)) {
            int end = at + 2;
            while (inWord(end))
                ++end;
            if (lower(at + 2))
                candidates << QString::fromLatin1(tokens.mid(at + 2, end - at - 2));
        }
        candidates.removeDuplicates();
        int keywords = 0;
        for (int first = 0; first < candidates.size(); first += 32) { // 32 at a time
            std::vector<QProcess> runs(32);
            const int last = std::min(first + 32, candidates.size());
            for (int i = first; i < last; ++i)
                compile(runs[size_t(i - first)], candidates.at(i), i);
            for (int i = first; i < last; ++i) {
                keywords += isVerilogKeyword(candidates.at(i));
                QVERIFY2(moduleNameProblem(candidates.at(i)).isEmpty()
                             == accepted(runs[size_t(i - first)]),
                         qPrintable(candidates.at(i)));
            }
        }
        QVERIFY(keywords == 123 && candidates.size() > 300); // the token names were found
        QCOMPARE(moduleNameProblem("wire"),
                 QString("The module name \"wire\" is a reserved Verilog keyword."));
        QVERIFY(
            moduleNameProblem("a\nb").contains("\"a<U+000A>b\" is not a legal Verilog identifier")
            && moduleNameProblem("a\nb").endsWith(" letters, digits, \"_\" and \"$\"."));
    }
};

QTEST_GUILESS_MAIN(TestNameRules)
#include "tst_namerules.moc"
