#include "recordrules.h"

#include <config/configkeys.h>
#include <config/linerates.h>
#include <dialog/fieldrules.h>
#include <ipserdes/namerules.h>
#include <serdes/resourcenames.h>

#include <QVector>

#include <algorithm>
#include <functional>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
using IPCPRI::Config::initialValue;
using IPSERDESIP::NameRules::fileNameProblems;
using IPSERDESIP::NameRules::moduleNameProblem;

// A choice of the dialog. Some readers of the record put a default in place
// of a missing value; those choices may be missing.
// A field the dialog keeps in shape: what it would keep of an entry.
struct Field
{
    const QString &key;
    std::function<bool(QChar)> allowed;
    std::function<QString(const QString &)> keeps;
};

QString controlCharacter(const QString &text)
{
    for (QChar c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line
            || c.category() == QChar::Separator_Paragraph)
            return QStringLiteral("U+%1").arg(QString::number(c.unicode(), 16).toUpper(), 4,
                                              QLatin1Char('0'));
    }
    return QString();
}

QStringList lineRates()
{
    QStringList rates{initialValue(Key::LineRate).toString()};
    for (const IPCPRI::Config::RateRow &row : IPCPRI::Config::rateRows()) {
        if (!row.reserved())
            rates << IPCPRI::Config::lineRateText(row.gbps);
    }
    return rates;
}

bool isHexDigit(QChar c)
{
    const ushort u = c.unicode();
    return (u >= '0' && u <= '9') || (u >= 'a' && u <= 'f') || (u >= 'A' && u <= 'F');
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool isMaskDigit(QChar c)
{
    return c == QLatin1Char('0') || c == QLatin1Char('1');
}

// A masked field shows all its digits, as many as its initial text has.
std::function<QString(const QString &)> fullMask(const QString &key,
                                                 std::function<QString(const QString &)> rule)
{
    return [key, rule](const QString &text) {
        return text.size() == initialValue(key).toString().size() ? rule(text)
                                                                  : initialValue(key).toString();
    };
}

const QVector<Field> &fields()
{
    namespace Rules = IPCPRI::FieldRules;
    const auto same = [](const QString &text) { return text; };
    static const QVector<Field> table = {
        {Key::ConfigClkPeriod, isDigit, Rules::configClock},
        {Key::ScramblerSeed, isHexDigit,
         fullMask(Key::ScramblerSeed, [](const QString &t) { return Rules::scramblerSeed(t, nullptr); })},
        {Key::HdlcRate, isHexDigit, fullMask(Key::HdlcRate, Rules::hdlcRate)},
        {Key::HdlcByte, isHexDigit, fullMask(Key::HdlcByte, same)},
        {Key::HdlcMask, isHexDigit, fullMask(Key::HdlcMask, same)},
        {Key::EthernetPointer, isHexDigit,
         fullMask(Key::EthernetPointer, [](const QString &t) { return Rules::ethernetPointer(t, nullptr); })},
        {Key::SpeedEnablesRecord, isMaskDigit, fullMask(Key::SpeedEnablesRecord, same)},
    };
    return table;
}

QString fieldProblem(const QMap<QString, QVariant> &record)
{
    for (const Field &field : fields()) {
        const QString text = record.value(field.key).toString();
        const QString kept = field.keeps(text);
        if (text.isEmpty() || !std::all_of(text.cbegin(), text.cend(), field.allowed)
            || kept != text) {
            return QStringLiteral("\"%1\" is \"%2\", which the dialog does not keep (it would "
                                  "put \"%3\")")
                .arg(field.key, text, kept == text ? initialValue(field.key).toString() : kept);
        }
    }
    return QString();
}

} // namespace

RecordRules::RecordRules(const QStringList &offeredLanes, const QString &partName)
    : m_lanes(offeredLanes), m_partName(partName)
{
}

QString RecordRules::problem(const QMap<QString, QVariant> &record) const
{
    if (record.isEmpty())
        return QStringLiteral("the record is empty: nothing to generate");
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        const QString found = it.value().userType() == QMetaType::QString
                                  ? controlCharacter(it.value().toString())
                                  : QString();
        if (!found.isEmpty())
            return QStringLiteral("\"%1\" holds the control character %2").arg(it.key(), found);
    }
    const QStringList fileProblems = fileNameProblems(record.value(Key::File).toString());
    if (!fileProblems.isEmpty())
        return fileProblems.first();
    const QString moduleProblem = moduleNameProblem(record.value(Key::Module).toString());
    if (!moduleProblem.isEmpty())
        return moduleProblem;
    const QString choice = choiceProblem(record);
    return choice.isEmpty() ? fieldProblem(record) : choice;
}

struct RecordRules::Choice
{
    const QString &key;
    QStringList offered;
    bool mayBeMissing;
};

QVector<RecordRules::Choice> RecordRules::choices() const
{
    using namespace IPCPRI;
    const QStringList modes{Config::AutoMode, Config::ManualMode};
    return {
        {Key::LineRate, lineRates(), false},
        {Key::ChannelSelection, m_lanes, false},
        {Key::RefClkSource, Serdes::offeredRefClocks(m_partName), false},
        {Key::PllSelection, {Serdes::Qpll0, Serdes::Qpll1, Serdes::Cpll}, false},
        {Key::LoopbackMode, Config::loopbackModes(), false},
        {Key::Mode64b66b, {Config::SerDesPlacement, Config::FabricPlacement}, true},
        {Key::DifferentialSwing, Config::differentialSwings(), true},
        {Key::FfeMode, modes, true},
        {Key::SdThreshold, Config::signalDetectThresholds(), true},
        {Key::EqualizationMode, modes, true},
    };
}

QStringList RecordRules::offered(const QString &key) const
{
    for (const Choice &choice : choices()) {
        if (choice.key == key)
            return choice.offered;
    }
    return QStringList();
}

QString RecordRules::choiceProblem(const QMap<QString, QVariant> &record) const
{
    for (const Choice &choice : choices()) {
        if (choice.mayBeMissing && !record.contains(choice.key))
            continue;
        const QString value = record.value(choice.key).toString();
        if (!choice.offered.contains(value)) {
            return QStringLiteral("\"%1\" is \"%2\", which the dialog does not offer (it offers %3)")
                .arg(choice.key, value,
                     choice.offered.isEmpty() ? QStringLiteral("none")
                                              : choice.offered.join(QStringLiteral(", ")));
        }
    }
    return QString();
}

} // namespace CpriHost
