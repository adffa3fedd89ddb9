#include "recordcheck.h"

#include "dialogtexts.h"
#include "fieldrules.h"
#include "loaddefaults.h"
#include "../config/linerates.h"
#include "../config/speedrules.h"
#include "../generate/generationnames.h"
#include "../generate/synthesisoptions.h"
#include "../serdes/clocking.h"
#include "../serdes/resourcenames.h"

#include <ipserdes/generator.h>
#include <ipserdes/refsource.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

#include <QTemporaryDir>

#include <algorithm>

namespace IPCPRI {

namespace {

namespace Key = Config::Key;
using namespace RecordFindings;
using Finding = RecordFinding;

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

// A masked field of hexadecimal places takes a text the program sets the
// way a line edit with an input mask does: its hexadecimal digits in order,
// as many as there are places, and the places left blank show "0".
QString maskFit(const QString &text, int places)
{
    QString kept;
    for (QChar c : text) {
        if (kept.size() == places)
            break;
        if (c.isDigit() ? c.unicode() < 128
                        : (c.toLower() >= QLatin1Char('a') && c.toLower() <= QLatin1Char('f')))
            kept += c;
    }
    return kept.leftJustified(places, QLatin1Char('0'));
}

QStringList rateKeys()
{
    QStringList keys;
    for (const Config::RateRow &row : Config::rateRows())
        keys << row.key;
    return keys;
}

QStringList classKeys()
{
    QStringList keys;
    for (const Config::SpeedClass &speedClass : Config::speedClasses())
        keys << speedClass.key;
    return keys;
}

// The preset fields with an input mask of hexadecimal places, as many as
// their initial texts have.
const QStringList &maskedKeys()
{
    static const QStringList keys = {Key::ScramblerSeed, Key::HdlcRate, Key::HdlcByte,
                                     Key::HdlcMask, Key::EthernetPointer};
    return keys;
}

// The largest value a spin box of the AFE tab takes; 0 for other keys.
int spinMaximum(const QString &key)
{
    static const QMap<QString, int> maxima = {
        {Key::FfeCm, FieldRules::FfeTapMaximum},
        {Key::FfeC1, FieldRules::FfeTapMaximum},
        {Key::Att, FieldRules::AttenuationMaximum},
        {Key::Boost, FieldRules::BoostMaximum},
    };
    return maxima.value(key);
}

// The box an exclusive group ends with when its boxes are set in order: the
// last set true, or none (-1).
int lastSet(const ConfigMap &record, const QStringList &keys)
{
    for (int i = keys.size() - 1; i >= 0; --i) {
        if (!keys.at(i).isEmpty() && record.value(keys.at(i)).toBool())
            return i;
    }
    return -1;
}

} // namespace

// The dialog after loading the record: what each widget holds.
class RecordCheck::Opened
{
public:
    Opened(const RecordCheck &check, const ConfigMap &record);

    // The first check of accepting that fails, with the dialog's message.
    Finding refusal() const;
    // What collecting writes once accepting passes.
    ConfigMap collected() const;
    // Why the dialog writes what it writes under a key, where it says more
    // than the value does.
    QString reasonFor(const QString &key, const ConfigMap &written) const;
    QString speedContext(const ConfigMap &written) const;

private:
    void collectAfe(ConfigMap &record) const;
    QVariant loaded(const QString &key) const;
    void loadSpeed();
    void loadClocking();
    Finding calculation() const;
    QStringList pllsFor(const QString &lineRate) const;
    QString chosenPll() const;
    QString choice(const QString &key) const;
    int clamped(const QString &key) const;
    bool encodingShown() const;

    const RecordCheck &m_check;
    const ConfigMap &m_record;
    QString m_part;
    QStringList m_lanes;        // the registry's free lanes, as the lane list shows them
    QString m_lane;             // the lane current after loading
    int m_class = -1;           // the speed class checked, by class row
    int m_rate = -1;            // the rate box checked, by rate row
    Config::SpeedState m_speed; // what the enabled and checked rate boxes give
    QString m_loadedRate;       // the line-rate text loading sets
};

RecordCheck::Opened::Opened(const RecordCheck &check, const ConfigMap &record)
    : m_check(check), m_record(record), m_part(check.m_frame.device.device())
{
    loadSpeed();
    loadClocking();
}

QVariant RecordCheck::Opened::loaded(const QString &key) const
{
    return m_record.value(key, Loading::missingValue(key));
}

// Boxes are checked without clicks: no speed rule runs, so each rate box
// stays enabled as the device's grade left it.
void RecordCheck::Opened::loadSpeed()
{
    m_class = lastSet(m_record, classKeys());
    m_rate = lastSet(m_record, rateKeys());
    QVector<bool> on(Config::rateRows().size(), false);
    if (m_rate >= 0)
        on[m_rate] = Config::rateOfferedAtStart(m_rate, m_check.m_frame.device.condition());
    m_speed = Config::speedState(on);
}

void RecordCheck::Opened::loadClocking()
{
    m_lanes = registry()->notOccupiedLanes();
    const QString lane = loaded(Key::ChannelSelection).toString();
    m_lane = m_lanes.contains(lane) ? lane : m_lanes.value(0);
    m_loadedRate = loaded(Key::LineRate).toString();
}

// The PLLs offered for the lane while the line-rate field shows the text.
QStringList RecordCheck::Opened::pllsFor(const QString &lineRate) const
{
    return Serdes::offeredPlls(m_lane, Config::withoutUnit(lineRate).toDouble());
}

// Loading selects the record's PLL among those its line rate offers; when
// accepting rewrites the line rate, the list is refilled and its first PLL
// is current.
QString RecordCheck::Opened::chosenPll() const
{
    const QString rate = Config::lineRateText(m_speed.highest);
    if (rate != m_loadedRate)
        return pllsFor(rate).value(0);
    const QStringList plls = pllsFor(m_loadedRate);
    const QString pll = loaded(Key::PllSelection).toString();
    return plls.contains(pll) ? pll : plls.value(0);
}

// A list's item by the record's text; no item matches: no item is current.
QString RecordCheck::Opened::choice(const QString &key) const
{
    const QString text = loaded(key).toString();
    return RecordCheck::offered(key, m_lanes, m_part).contains(text) ? text : QString();
}

// A spin box keeps a value within its range.
int RecordCheck::Opened::clamped(const QString &key) const
{
    return std::clamp(loaded(key).toInt(), 0, spinMaximum(key));
}

// The encoding group follows the check of the 64B/66B rates on the devices
// of the two families, and stays shown on any other device.
bool RecordCheck::Opened::encodingShown() const
{
    if (!Serdes::inFamily(Serdes::BothFamilies, m_part))
        return true;
    return Config::coded64b66bRates().contains(m_rate);
}

ConfigMap RecordCheck::Opened::collected() const
{
    const Frame &frame = m_check.m_frame;
    ConfigMap r{
        {Key::TargetDevice, frame.device.id()},
        {Key::Type, m_check.m_coreType},
        {Key::Version, Config::FormatVersion},
        {Key::SynthesisTool, frame.synthesisTool},
        {Key::Language, frame.languageIndex},
        {Key::File, frame.file},
        {Key::Module, frame.module},
    };
    const QStringList classes = classKeys();
    for (int i = 0; i < classes.size(); ++i)
        r.insert(classes.at(i), i == m_class);
    const QStringList rates = rateKeys();
    for (int i = 0; i < rates.size(); ++i) {
        if (!rates.at(i).isEmpty())
            r.insert(rates.at(i), m_speed.mask.at(m_speed.mask.size() - 1 - i) == QLatin1Char('1'));
    }
    // The radio buttons of a pair: the second is checked when the record
    // sets it, otherwise the first stays checked. Master and Slave are
    // disabled: neither counts.
    r.insert(Key::Master, false);
    r.insert(Key::Slave, false);
    for (const auto &pair : {qMakePair(Key::Mii, Key::Gmii),
                             qMakePair(Key::ProtocolVersion1, Key::ProtocolVersion2)}) {
        const bool second = loaded(pair.second).toBool();
        r.insert(pair.first, !second);
        r.insert(pair.second, second);
    }
    r.insert(Key::ConfigClkPeriod, loaded(Key::ConfigClkPeriod).toString());
    for (const QString &key : maskedKeys())
        r.insert(key, maskFit(loaded(key).toString(), Config::initialValue(key).toString().size()));
    r.insert(Key::FixedConfigEnable, loaded(Key::FixedConfigEnable).toBool());
    const bool vendorRate = Config::realTimeVendorRates().contains(m_rate) && m_speed.highest > 0;
    r.insert(Key::RealTimeVendor, loaded(Key::RealTimeVendor).toBool() && vendorRate);
    r.insert(Key::ChannelSelection, m_lane);
    r.insert(Key::LineRate, Config::lineRateText(m_speed.highest));
    r.insert(Key::RefClkSource, choice(Key::RefClkSource));
    r.insert(Key::RefClkFrequency, loaded(Key::RefClkFrequency).toString());
    r.insert(Key::PllSelection, chosenPll());
    r.insert(Key::LoopbackMode, choice(Key::LoopbackMode));
    if (encodingShown())
        r.insert(Key::Mode64b66b, choice(Key::Mode64b66b));
    r.insert(Key::HighestSpeedIndex, m_speed.highestIndex);
    r.insert(Key::SpeedEnablesRecord, m_speed.mask);
    collectAfe(r);
    for (const QString &key : Config::optionalPortKeys())
        r.insert(key, loaded(key).toBool());
    // Without a decision in the record, the bias question is answered Yes.
    r.insert(Key::ChangedAllOfBias, m_record.value(Key::ChangedAllOfBias, true).toBool());
    return r;
}

void RecordCheck::Opened::collectAfe(ConfigMap &r) const
{
    const int cm = clamped(Key::FfeCm);
    const int c1 = clamped(Key::FfeC1);
    r.insert(Key::DifferentialSwing, choice(Key::DifferentialSwing));
    r.insert(Key::FfeMode, choice(Key::FfeMode));
    r.insert(Key::FfeCm, cm);
    r.insert(Key::FfeC1, c1);
    r.insert(Key::FfeC0, QString::number(FieldRules::ffeC0(cm, c1)));
    r.insert(Key::SdThreshold, choice(Key::SdThreshold));
    r.insert(Key::EqualizationMode, choice(Key::EqualizationMode));
    r.insert(Key::Att, clamped(Key::Att));
    r.insert(Key::Boost, clamped(Key::Boost));
}

// The checks of accepting, in the dialog's order.
Finding RecordCheck::Opened::refusal() const
{
    const Frame &frame = m_check.m_frame;
    const QString grade = frame.device.condition();
    if (!frame.fileProblem.isEmpty())
        return refused(Key::File, subject(m_record, Key::File), frame.fileProblem);
    if (!frame.moduleProblem.isEmpty())
        return refused(Key::Module, subject(m_record, Key::Module), frame.moduleProblem);
    if (m_lanes.isEmpty())
        return refused(Key::ChannelSelection, subject(m_record, Key::ChannelSelection),
                       Texts::NoAvailableLanes,
                       QStringLiteral("other cores hold every lane of the device"));
    if (m_speed.highestIndex < 0 && m_rate >= 0)
        return refused(rateKeys().at(m_rate), subject(m_record, rateKeys().at(m_rate)),
                       Texts::EnableSpeed,
                       QStringLiteral("a device of grade \"%1\" does not offer %2")
                           .arg(grade, Config::lineRateText(Config::rateRows().at(m_rate).gbps)));
    if (m_speed.highestIndex < 0)
        return refused(Key::LineRate, QStringLiteral("no rate is set"), Texts::EnableSpeed);
    if (m_class < 0)
        return refused(Key::SpeedSel3072, QStringLiteral("no speed class is set"),
                       Texts::SelectSpeedSelection);
    const int cm = clamped(Key::FfeCm);
    const int c1 = clamped(Key::FfeC1);
    if (!FieldRules::ffeC0Accepted(FieldRules::ffeC0(cm, c1)))
        return refused(Key::FfeC0,
                       subject(m_record, Key::FfeCm) + QStringLiteral(" and ")
                           + subject(m_record, Key::FfeC1),
                       Texts::C0TooSmall);
    return calculation();
}

// The silent calculation: the reference clock, its route to the lane and
// the transceiver generator, which writes into the scratch folder.
Finding RecordCheck::Opened::calculation() const
{
    const QString source = choice(Key::RefClkSource);
    const QString frequency = loaded(Key::RefClkFrequency).toString();
    if (Serdes::refClockUsedAtOtherFrequency(source, frequency)) {
        const IPSERDESIP::REF_SOURCE *used =
            registry()->FormStringToREFSPtr(IPSERDESIP::refsrcOptTransforSerdesName(source));
        return refused(Key::RefClkFrequency, subject(m_record, Key::RefClkFrequency),
                       Texts::RefClockUnreachable,
                       QStringLiteral("another core runs %1 at %2 MHz")
                           .arg(source, Serdes::frequencyText(used->frequency)));
    }
    if (!Serdes::refClockReachesLane(source, m_lane))
        return refused(Key::RefClkSource, subject(m_record, Key::RefClkSource),
                       Texts::RefClockUnreachable,
                       QStringLiteral("it does not reach %1").arg(m_lane));
    const ConfigMap record = collected();
    QStringList settings = Generate::settingLines(record, m_part);
    registry()->setGlobalResetEnableParam(settings);
    // The register file the generator writes goes to a folder of its own.
    const QTemporaryDir scratch;
    IPSERDESIP::generator generator;
    if (scratch.isValid()
        && generator.generate(settings, scratch.filePath(Generate::RegisterFile), QStringList()))
        return Finding();
    // The generator's own lines say why; without them, what was asked of it.
    const QStringList errors = generator.getErrStringList();
    return refused(
        Key::RefClkFrequency, subject(m_record, Key::RefClkFrequency),
        Texts::calculationFailure(errors).replace(QLatin1Char('\n'), QStringLiteral("; ")),
        errors.isEmpty() ? QStringLiteral("%1 for %2 at %3")
                               .arg(record.value(Key::PllSelection).toString(), m_lane,
                                    record.value(Key::LineRate).toString())
                         : QString());
}

QString RecordCheck::Opened::reasonFor(const QString &key, const ConfigMap &written) const
{
    const QStringList choices = RecordCheck::offered(key, m_lanes, m_part);
    if (key == Key::Master || key == Key::Slave)
        return QStringLiteral("its Master and Slave buttons are disabled");
    if (key == Key::Mii || key == Key::Gmii)
        return QStringLiteral("MII and GMII exclude each other");
    if (key == Key::ProtocolVersion1 || key == Key::ProtocolVersion2)
        return QStringLiteral("one protocol version at a time");
    if (classKeys().contains(key) || rateKeys().contains(key))
        return QStringLiteral("one box at a time, the last one set; a rate box only where the "
                              "device's grade offers it");
    if (key == Key::RealTimeVendor)
        return QStringLiteral("only 10.1376 and 12.16512 Gbps carry real-time vendor data");
    if (key == Key::PllSelection)
        return QStringLiteral("for %1 at %2 it offers %3")
            .arg(m_lane, written.value(Key::LineRate).toString(),
                 quotedList(pllsFor(written.value(Key::LineRate).toString())));
    if (key == Key::Mode64b66b)
        return QStringLiteral("on this device only the 64B/66B-coded rates offer it");
    if (!choices.isEmpty())
        return QStringLiteral("it offers %1").arg(quotedList(choices));
    if (maskedKeys().contains(key))
        return QStringLiteral("its field holds %1 hexadecimal digits")
            .arg(Config::initialValue(key).toString().size());
    if (key == Key::FfeC0)
        return QStringLiteral("%1 - FFE_CM - FFE_C1").arg(FieldRules::FfeTapSum);
    if (spinMaximum(key) > 0)
        return QStringLiteral("it takes 0 to %1").arg(spinMaximum(key));
    if (key == Key::ChangedAllOfBias)
        return QStringLiteral("accepted untouched, its bias applies to the whole quad");
    return QString();
}

// "for the class X at Y": the speed keys follow the rate and class boxes.
QString RecordCheck::Opened::speedContext(const ConfigMap &written) const
{
    return QStringLiteral("for the class %1 at %2 ")
        .arg(m_class >= 0 ? classKeys().at(m_class) : QStringLiteral("(none)"),
             written.value(Key::LineRate).toString());
}

RecordCheck::RecordCheck(const QString &coreType, const Frame &frame)
    : m_coreType(coreType), m_frame(frame)
{}

RecordCheck::Finding RecordCheck::check(const ConfigMap &record) const
{
    if (record.value(Key::Version).toString() != Config::FormatVersion)
        return refused(Key::Version, subject(record, Key::Version), Texts::IncompatibleVersion);
    Finding found = unknownKey(record);
    if (found.isNone())
        found = fieldProblem(record);
    if (!found.isNone())
        return found;
    // A choice the dialog does not offer leaves its list empty, which is
    // what makes the calculation fail: it is named first.
    const Opened opened(*this, record);
    found = firstChange(record, opened, true);
    if (found.isNone())
        found = opened.refusal();
    return found.isNone() ? firstChange(record, opened, false) : found;
}

// The first key, in record order, that the dialog writes otherwise; with
// unofferedOnly, the first whose list offers nothing the record names.
RecordCheck::Finding RecordCheck::firstChange(const ConfigMap &record, const Opened &opened,
                                              bool unofferedOnly) const
{
    const ConfigMap written = opened.collected();
    const QStringList speedKeys{Key::LineRate, Key::HighestSpeedIndex, Key::SpeedEnablesRecord};
    for (const Config::KeySpec &keyRule : Config::recordKeys()) {
        const QString &key = keyRule.key;
        // Every list offers something when some lane is free.
        const bool list = !offered(key, {QString()}, QString()).isEmpty();
        const bool unoffered =
            list && written.contains(key) && written.value(key).toString().isEmpty();
        if (!(unofferedOnly && unoffered) && record.contains(key) == written.contains(key)
            && sameValue(record.value(key), written.value(key)))
            continue;
        // A list left without an item the dialog could never have written.
        const bool kept = sameValue(record.value(key), written.value(key));
        if (unofferedOnly && unoffered)
            return finding(kept ? Finding::Kept : Finding::Changed, key,
                           QStringLiteral("%1, which the dialog does not offer (%2)")
                               .arg(subject(record, key), opened.reasonFor(key, written)));
        if (unofferedOnly)
            continue;
        const QString writes =
            written.contains(key) ? QStringLiteral("the dialog writes ") + shown(written.value(key))
                                  : QStringLiteral("the dialog leaves it out");
        if (speedKeys.contains(key))
            return finding(Finding::Changed, key,
                           QStringLiteral("%1; %2%3")
                               .arg(subject(record, key), opened.speedContext(written), writes));
        const QString reason = opened.reasonFor(key, written);
        return finding(
            record.contains(key) ? Finding::Changed : Finding::Missing, key,
            QStringLiteral("%1; %2%3")
                .arg(subject(record, key), writes,
                     reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason)));
    }
    return Finding();
}

ConfigMap RecordCheck::handedBack(const ConfigMap &record, QString *refusal) const
{
    if (record.value(Key::Version).toString() != Config::FormatVersion) {
        if (refusal)
            *refusal = Texts::IncompatibleVersion;
        return ConfigMap();
    }
    const Opened opened(*this, record);
    const Finding found = opened.refusal();
    if (refusal)
        *refusal = found.text;
    return found.isNone() ? opened.collected() : ConfigMap();
}

QStringList RecordCheck::offered(const QString &key, const QStringList &lanes,
                                 const QString &partName)
{
    const QStringList modes{Config::AutoMode, Config::ManualMode};
    const QMap<QString, QStringList> lists = {
        {Key::ChannelSelection, lanes},
        {Key::RefClkSource, Serdes::offeredRefClocks(partName)},
        {Key::PllSelection, {Serdes::Qpll0, Serdes::Qpll1, Serdes::Cpll}},
        {Key::LoopbackMode, Config::loopbackModes()},
        {Key::Mode64b66b, {Config::SerDesPlacement, Config::FabricPlacement}},
        {Key::DifferentialSwing, Config::differentialSwings()},
        {Key::FfeMode, modes},
        {Key::SdThreshold, Config::signalDetectThresholds()},
        {Key::EqualizationMode, modes},
    };
    return lists.value(key);
}

} // namespace IPCPRI
