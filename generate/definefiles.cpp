#include "definefiles.h"

#include "../config/linerates.h"
#include "../serdes/resourcenames.h"

#include <cmath>

namespace IPCPRI {
namespace Generate {

namespace {

namespace Key = Config::Key;

struct FlagDefine
{
    const QString &key;
    QString line;
};

namespace Define {
const QString ModuleName = QStringLiteral("`define module_name %1");
const QString LaneNum = QStringLiteral("`define LANE_NUM %1");
const QString SerDes64b66b = QStringLiteral("`define SerDes_64b66b");
const QString ExtPortEn = QStringLiteral("`define EXT_PORT_EN");
const QString LineRateMask = QStringLiteral("`define LINE_RATE_MASK 12'b%1");
const QString LineRateInit = QStringLiteral("`define LINE_RATE_INIT %1");
const QString CfgClkPeriod = QStringLiteral("`define CFG_CLK_PERIOD %1");
const QString EthMii = QStringLiteral("`define ETH_MII");
const QString EthGmii = QStringLiteral("`define ETH_GMII");
const QString ProtocolVer1 = QStringLiteral("`define PROTOCOL_VER 8'h1");
const QString ProtocolVer2 = QStringLiteral("`define PROTOCOL_VER 8'h2");
const QString ScramblerSeed = QStringLiteral("`define SCRAMBLER_SEED 31'h%1");
const QString HdlcRate = QStringLiteral("`define HDLC_RATE 8'h%1");
const QString EthPointer = QStringLiteral("`define ETH_POINTER 6'h%1");
const QString FixedCfgForTiming = QStringLiteral("`define FIXED_CFG_FOR_TIMING");
const QString HdlcUserByte = QStringLiteral("`define HDLC_USER_BYTE 4'h%1");
const QString HdlcUserMask = QStringLiteral("`define HDLC_USER_MASK 16'h%1");
const QString RealTimeVendor = QStringLiteral("`define REAL_TIME_VENDOR_UP10G");
const QString MasterEnable = QStringLiteral("`define MASTER_ENABLE 1");
const QString SlaveEnable = QStringLiteral("`define MASTER_ENABLE 0");
const QString Qpll0Sel = QStringLiteral("`define QPLL0_SEL");
const QString Qpll1Sel = QStringLiteral("`define QPLL1_SEL");
const QString CpllSel = QStringLiteral("`define CPLL_SEL");
} // namespace Define

// The port rows: each flag gives its own line; the loopback row comes
// before the 64B/66B row, the others after it.
const QVector<FlagDefine> &portDefines()
{
    static const QVector<FlagDefine> rows = {
        {Key::DrpPorts, QStringLiteral("`define DRP_PORT_EN")},
        {Key::FfePorts, QStringLiteral("`define TX_FFE_PORT_EN")},
        {Key::PrbsGeneratorPorts, QStringLiteral("`define TX_PRBS_PORT_EN")},
        {Key::DifferentialSwingPorts, QStringLiteral("`define TX_DIFF_PORT_EN")},
        {Key::PrbsCheckerPorts, QStringLiteral("`define RX_PRBS_PORT_EN")},
        {Key::EqualizationPorts, QStringLiteral("`define RX_EQ_PORT_EN")},
        {Key::BiasPorts, QStringLiteral("`define RX_BIAS_PORT_EN")},
    };
    return rows;
}

const QVector<FlagDefine> &speedClassDefines()
{
    static const QVector<FlagDefine> rows = {
        {Key::SpeedSel3072, QStringLiteral("`define LINE_RATE_3GBPS_AND_UNDER")},
        {Key::SpeedSel6144, QStringLiteral("`define LINE_RATE_6GBPS_AND_UNDER")},
        {Key::SpeedSel98304, QStringLiteral("`define LINE_RATE_9GBPS_AND_UNDER_64B")},
        {Key::SpeedSel101376, QStringLiteral("`define LINE_RATE_10GBPS_AND_UNDER")},
        {Key::SpeedSel1216512, QStringLiteral("`define LINE_RATE_12GBPS_AND_UNDER")},
    };
    return rows;
}

const QString LoopbackPortDefine = QStringLiteral("`define LOOPBACK_PORT_EN");

// Nanoseconds per cycle of the configuration clock given in MHz. A missing
// clock, or one that gives no finite period (zero, a text that is no number,
// "nan", "1e-320"), falls back to the dialog's default.
QString configClockPeriod(const ConfigMap &record)
{
    bool ok = false;
    double period = 1000.0 / record.value(Key::ConfigClkPeriod).toString().toDouble(&ok);
    if (!ok || !std::isfinite(period))
        period = 1000.0 / Config::keySpec(Key::ConfigClkPeriod)->initial.toString().toDouble();
    return QString::number(period, 'f', 2);
}

void appendFlags(QStringList &lines, const ConfigMap &record, const QVector<FlagDefine> &rows)
{
    for (const FlagDefine &row : rows) {
        if (record.value(row.key).toBool())
            lines << row.line;
    }
}

// Appends the first line whose flag is set, if any.
void appendFirst(QStringList &lines, const ConfigMap &record,
                 std::initializer_list<FlagDefine> alternatives)
{
    for (const FlagDefine &row : alternatives) {
        if (record.value(row.key).toBool()) {
            lines << row.line;
            return;
        }
    }
}

// Every line the two files may hold, in file order.
QStringList everyDefineLine()
{
    QStringList lines{Define::ModuleName, Define::LaneNum, LoopbackPortDefine,
                      Define::SerDes64b66b};
    for (const FlagDefine &row : portDefines())
        lines << row.line;
    lines << Define::ExtPortEn;
    for (const FlagDefine &row : speedClassDefines())
        lines << row.line;
    return lines << Define::LineRateMask << Define::LineRateInit << Define::CfgClkPeriod
                 << Define::EthMii << Define::EthGmii << Define::ProtocolVer1
                 << Define::ProtocolVer2 << Define::ScramblerSeed << Define::HdlcRate
                 << Define::EthPointer << Define::FixedCfgForTiming << Define::HdlcUserByte
                 << Define::HdlcUserMask << Define::RealTimeVendor << Define::MasterEnable
                 << Define::SlaveEnable << Define::Qpll0Sel << Define::Qpll1Sel << Define::CpllSel;
}

QString pllDefine(const QString &pll)
{
    if (pll == Serdes::Qpll0)
        return Define::Qpll0Sel;
    if (pll == Serdes::Qpll1)
        return Define::Qpll1Sel;
    if (pll == Serdes::Cpll)
        return Define::CpllSel;
    return QString();
}

QString text(const ConfigMap &record, const QString &key)
{
    return record.value(key).toString();
}

} // namespace

QStringList defineNames()
{
    QStringList names;
    for (const QString &line : everyDefineLine())
        names << line.section(QLatin1Char(' '), 1, 1);
    names.removeDuplicates();
    return names;
}

QStringList topDefines(const ConfigMap &record)
{
    return {Define::ModuleName.arg(text(record, Key::Module))};
}

QStringList coreDefines(const ConfigMap &record)
{
    QStringList lines;
    const QVector<Serdes::Lane> &lanes = Serdes::lanes();
    for (int number = 0; number < lanes.size(); ++number) {
        if (lanes.at(number).displayName == text(record, Key::ChannelSelection))
            lines << Define::LaneNum.arg(number);
    }
    if (record.value(Key::LoopbackPorts).toBool())
        lines << LoopbackPortDefine;
    if (text(record, Key::Mode64b66b) == Config::SerDesPlacement)
        lines << Define::SerDes64b66b;
    appendFlags(lines, record, portDefines());
    if (Config::anyOptionalPort(record))
        lines << Define::ExtPortEn;
    appendFlags(lines, record, speedClassDefines());
    lines << Define::LineRateMask.arg(text(record, Key::SpeedEnablesRecord))
          << Define::LineRateInit.arg(record.value(Key::HighestSpeedIndex).toInt())
          << Define::CfgClkPeriod.arg(configClockPeriod(record));
    appendFirst(lines, record, {{Key::Mii, Define::EthMii}, {Key::Gmii, Define::EthGmii}});
    appendFirst(lines, record,
                {{Key::ProtocolVersion1, Define::ProtocolVer1},
                 {Key::ProtocolVersion2, Define::ProtocolVer2}});
    lines << Define::ScramblerSeed.arg(text(record, Key::ScramblerSeed))
          << Define::HdlcRate.arg(text(record, Key::HdlcRate))
          << Define::EthPointer.arg(text(record, Key::EthernetPointer));
    if (record.value(Key::FixedConfigEnable).toBool())
        lines << Define::FixedCfgForTiming;
    lines << Define::HdlcUserByte.arg(text(record, Key::HdlcByte))
          << Define::HdlcUserMask.arg(text(record, Key::HdlcMask));
    if (record.value(Key::RealTimeVendor).toBool())
        lines << Define::RealTimeVendor;
    appendFirst(lines, record,
                {{Key::Master, Define::MasterEnable}, {Key::Slave, Define::SlaveEnable}});
    const QString pll = pllDefine(text(record, Key::PllSelection));
    if (!pll.isEmpty())
        lines << pll;
    return lines;
}

} // namespace Generate
} // namespace IPCPRI
