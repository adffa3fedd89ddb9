#include "calculateguide.h"

#include "clocksguide.h"
#include "guidehtml.h"

#include <config/configkeys.h>
#include <config/linerates.h>
#include <core/idecore.h>
#include <dev/devicedb.h>
#include <dialog/dialogtexts.h>
#include <dialog/fieldrules.h>
#include <generate/generationnames.h>
#include <generate/synthesisoptions.h>
#include <ipserdes/generator.h>
#include <project.h>
#include <serdes/resourcenames.h>

#include <QDir>

#include <algorithm>

using namespace IPCPRI;
namespace Key = Config::Key;
namespace Field = CpriHost::ProjectField;

namespace Guide {

namespace {

QString quoted(const QString &text)
{
    return QStringLiteral("&ldquo;%1&rdquo;").arg(esc(text));
}

QString writeBackPart(const QString &dialogCommand)
{
    QStringList biasKeys;
    for (const Serdes::QuadBias &quad : Serdes::quadBiases())
        biasKeys << quad.registryKey;
    const QString entry =
        QStringLiteral("{\"%1\": ..., \"%2\": N}").arg(Field::Record, Field::QuadBias);
    return QStringLiteral("<h3>6. Changing a core: the dialog</h3>\n") + pre({dialogCommand})
           + QStringLiteral(
                 "<p>opens the dialog on the project's core of that number (counted from 1), "
                 "the other cores holding their lanes, PLLs and reference clocks and the "
                 "project's quad biases (%1) set: the dialog offers only free lanes, and its "
                 "bias box shows the "
                 "bias the project holds for the core's quad (%2 when neither the project nor "
                 "the dialog has one). OK writes the core back, each file replaced in one "
                 "step: its record where the project keeps it (the record file the project "
                 "names, or inside the project file), and its bias decision. When the record "
                 "claims its quad's bias (%3 true: the bias question below was answered Yes), "
                 "the core's entry becomes %4 with the bias the dialog chose, and that bias "
                 "also becomes the bias of every other core that claims the quad and the "
                 "quad's %5 value, as the question says the whole quad changes; when the "
                 "record declines, the entry has no %6. <code>--accept</code> presses OK at "
                 "once and answers every question Yes. Step 1, run again, generates the core "
                 "as changed, with the bias the project holds.</p>\n")
                 .arg(codes(biasKeys))
                 .arg(FieldRules::DefaultBias)
                 .arg(code(Key::ChangedAllOfBias), code(entry), code(Field::Shared),
                      code(Field::QuadBias));
}

// The generator's own lines for the fastest line rate the CPLL cannot make
// from the record's reference clock; rate is set to that rate.
QStringList generatorRefusal(const QMap<QString, QVariant> &record, const QString &scratch,
                             QString &rate)
{
    const QString partName = Core::IdeCore::deviceDataBase()
                                 ->findDevice(record.value(Key::TargetDevice).toString())
                                 .device();
    QVector<int> rates = offeredRates();
    std::reverse(rates.begin(), rates.end());
    for (int index : rates) {
        QMap<QString, QVariant> changed = record;
        rate = Config::lineRateText(Config::rateRows().at(index).gbps);
        changed.insert(Key::PllSelection, Serdes::Cpll);
        changed.insert(Key::LineRate, rate);
        IPSERDESIP::generator generator;
        if (!generator.generate(Generate::settingLines(changed, partName),
                                QDir(scratch).filePath(Generate::RegisterFile), QStringList()))
            return generator.getErrStringList();
    }
    return {};
}

QString calculatePart(const QMap<QString, QVariant> &record, const QString &scratch)
{
    const QString failure = quoted(Texts::FailureTitle);
    QString rate;
    const QStringList refusal = generatorRefusal(record, scratch, rate);
    return QStringLiteral(
               "<h4>The Calculate button</h4>\n<p>Calculate, on the %1 tab, tries before OK "
               "whether the chosen lane, PLL, reference clock and line rate can be made on "
               "the device. In this order:</p>\n<ol>\n"
               "<li>If another core uses the reference clock at another frequency, a %2 box "
               "says %3.</li>\n"
               "<li>The dialog's fields are collected into the record and the setting lines: "
               "the lane's lines, the reference clock's frequency line and the host's reset "
               "lines, as generation writes them to %4.</li>\n"
               "<li>The quad bias is settled: the first calculation after a lane is chosen "
               "asks the bias question (below); after Yes the quad's bias line joins the "
               "setting lines.</li>\n"
               "<li>If the reference clock does not reach the lane, a %2 box says %3. "
               "Otherwise the route (lane, PLL, reference clock) is registered for the "
               "calculation; the lane is released again at its end.</li>\n"
               "<li>The host's transceiver generator turns the setting lines into %5 in %6. "
               "When it cannot make the line rate from the reference clock, a %2 box shows "
               "its own lines, or %7 when it gives none; otherwise a box titled %8 says "
               "%9.</li>\n</ol>\n")
               .arg(quoted(Texts::PhyTab), failure, quoted(Texts::RefClockUnreachable),
                    code(Generate::SettingsFile), code(Generate::RegisterFile),
                    code(Generate::coreOutputDir(CoreFolder)), quoted(Texts::LineRateUnreachable),
                    quoted(Texts::SucceedTitle), quoted(Texts::Succeed))
           + QStringLiteral("<p>For example, the reference host's generator, asked for %1 "
                            "with the %2 from the %3 MHz reference clock of %4, says:</p>\n")
                 .arg(code(rate), code(Serdes::Cpll),
                      esc(record.value(Key::RefClkFrequency).toString()),
                      esc(record.value(Key::RefClkSource).toString()))
           + pre(refusal)
           + QStringLiteral("<p>OK runs the same calculation after its own checks, with no "
                            "box on success; its failures and the bias question show as they "
                            "do for Calculate, and a refused OK leaves the dialog open.</p>\n");
}

QString biasPart(const QMap<QString, QVariant> &record)
{
    const QString lane = record.value(Key::ChannelSelection).toString();
    const Serdes::QuadBias *quad = Serdes::quadOfLane(lane);
    QStringList others;
    for (const Serdes::Lane &candidate : Serdes::lanes()) {
        if (quad && candidate.quadName == quad->quadName && candidate.displayName != lane)
            others << candidate.displayName;
    }
    const int bias = FieldRules::DefaultBias;
    const QString key = quad ? quad->registryKey : QString();
    return QStringLiteral(
               "<h4>The quad bias question</h4>\n<p>The receivers of the %1 lanes of a quad "
               "share one bias. A core's bias box sets it for the whole quad, so the first "
               "calculation after a lane is chosen asks first, in a box titled %2; for %3 "
               "with a bias of %4:</p>\n")
               .arg(Serdes::LanesPerQuad)
               .arg(quoted(Texts::QuestionTitle), esc(lane))
               .arg(bias)
           + pre({Texts::BiasQuestion.arg(others.join(Texts::ListSeparator)).arg(bias)})
           + QStringLiteral(
                 "<ul>\n<li>Yes: the bias is the whole quad's. The core's setting lines get "
                 "the quad's bias line (%1), and OK stores %2 true in the record and the bias "
                 "as the quad's %3, in the project file as the core's %4.</li>\n"
                 "<li>No, or closing the box: the quad keeps the bias it has. No bias line is "
                 "written, and the record stores %2 false.</li>\n</ul>\n"
                 "<p>The question comes once for each choice of lane: another lane asks again, "
                 "and a stored record opens with its answer. Generation writes the quad's bias "
                 "line to %5 for a record that claims the bias, with the bias the project "
                 "holds.</p>\n")
                 .arg(code(quad ? quad->settingLine.arg(bias) : QString()),
                      code(Key::ChangedAllOfBias), code(key), code(Field::QuadBias),
                      code(Generate::SettingsFile));
}

QString messagesPart()
{
    const QString ok = QStringLiteral("OK: ");
    const QList<QStringList> messages = {
        {Texts::FailureTitle, Texts::RefClockUnreachable,
         QStringLiteral("Calculate or OK: another core uses the reference clock at another "
                        "frequency, or it does not reach the lane")},
        {Texts::FailureTitle, QString(),
         QStringLiteral("Calculate or OK: the generator cannot make the line rate and says "
                        "why")},
        {Texts::FailureTitle, Texts::LineRateUnreachable,
         QStringLiteral("Calculate or OK: the generator refuses without lines of its own")},
        {Texts::SucceedTitle, Texts::Succeed,
         QStringLiteral("Calculate: the generator wrote ") + Generate::RegisterFile},
        {Texts::QuestionTitle, Texts::BiasQuestion,
         QStringLiteral("the first calculation after a lane is chosen: %1 are the quad's other "
                        "lanes, %2 the bias")},
        {Texts::ErrorTitle, Texts::NoAvailableLanes, ok + QStringLiteral("no lane is free")},
        {Texts::ErrorTitle, Texts::EnableSpeed, ok + QStringLiteral("no line rate is enabled")},
        {Texts::ErrorTitle, Texts::SelectSpeedSelection,
         ok + QStringLiteral("no speed class is chosen")},
        {Texts::WarningTitle, Texts::C0TooSmall,
         ok + QStringLiteral("the FFE main tap is too small")},
    };
    QString rows;
    for (const QStringList &message : messages)
        rows += row({esc(message.at(0)),
                     message.at(1).isEmpty() ? QStringLiteral("the generator's own lines")
                                             : code(message.at(1)),
                     esc(message.at(2))});
    return QStringLiteral("<p>The messages of Calculate and OK:</p>\n")
           + table({QStringLiteral("Title"), QStringLiteral("Text"), QStringLiteral("When")}, rows,
                   QStringLiteral("dialog-messages"));
}

} // namespace

QString dialogSection(const QString &dialogCommand, const QMap<QString, QVariant> &record,
                      const QString &scratch)
{
    return writeBackPart(dialogCommand) + calculatePart(record, scratch) + biasPart(record)
           + messagesPart();
}

} // namespace Guide
