#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace IPCPRI {

// The configuration record of one CPRI core instance: key text to a text,
// bool or int value.
using ConfigMap = QMap<QString, QVariant>;

namespace Config {

// Every key of the record, spelled once.
namespace Key {
inline const QString TargetDevice = QStringLiteral("target_device");
inline const QString Type = QStringLiteral("type");
inline const QString Version = QStringLiteral("version");
inline const QString SynthesisTool = QStringLiteral("Synthesis_tool");
inline const QString Language = QStringLiteral("LANG");
inline const QString File = QStringLiteral("file");
inline const QString Module = QStringLiteral("module");
inline const QString SpeedSel3072 = QStringLiteral("3.072G_and_Under");
inline const QString SpeedSel6144 = QStringLiteral("6.144G_and_Under");
inline const QString SpeedSel98304 = QStringLiteral("9.8304G_and_Under");
inline const QString SpeedSel101376 = QStringLiteral("10.1376G_and_Under");
inline const QString SpeedSel1216512 = QStringLiteral("12.16512G_and_Under");
inline const QString Rate06144 = QStringLiteral("0.6144Gbps");
inline const QString Rate12288 = QStringLiteral("1.2288Gbps");
inline const QString Rate24576 = QStringLiteral("2.4576Gbps");
inline const QString Rate3072 = QStringLiteral("3.072Gbps");
inline const QString Rate49152 = QStringLiteral("4.9152Gbps");
inline const QString Rate6144 = QStringLiteral("6.144Gbps");
inline const QString Rate98304 = QStringLiteral("9.8304Gbps");
inline const QString Rate811008 = QStringLiteral("8.11008Gbps");
inline const QString Rate101376 = QStringLiteral("10.1376Gbps");
inline const QString Rate1216512 = QStringLiteral("12.16512Gbps");
inline const QString ConfigClkPeriod = QStringLiteral("Config_Clk_Period");
inline const QString Mii = QStringLiteral("MII");
inline const QString Gmii = QStringLiteral("GMII");
inline const QString ProtocolVersion1 = QStringLiteral("Initial_Protocol_Version1");
inline const QString ProtocolVersion2 = QStringLiteral("Initial_Protocol_Version2");
inline const QString ScramblerSeed = QStringLiteral("Initial_Scrambler_Seed");
inline const QString HdlcRate = QStringLiteral("Initial_HDLC_Rate");
inline const QString HdlcByte = QStringLiteral("Initial_HDLC_Byte");
inline const QString HdlcMask = QStringLiteral("Initial_HDLC_Mask");
inline const QString EthernetPointer = QStringLiteral("Initial_Ethernet_Pointer");
inline const QString FixedConfigEnable = QStringLiteral("Fixed_Config_Enable");
inline const QString RealTimeVendor = QStringLiteral("Real_Time_Vendor");
inline const QString Master = QStringLiteral("Master");
inline const QString Slave = QStringLiteral("Slave");
inline const QString ChannelSelection = QStringLiteral("Channel_Selection");
inline const QString LineRate = QStringLiteral("Line_Rate");
inline const QString RefClkSource = QStringLiteral("Reference_CLK_Source");
inline const QString RefClkFrequency = QStringLiteral("Reference_CLK_Frequency");
inline const QString PllSelection = QStringLiteral("PLL_Selection");
inline const QString LoopbackMode = QStringLiteral("Loopback_Mode");
inline const QString Mode64b66b = QStringLiteral("64B_66B_Mode");
inline const QString HighestSpeedIndex = QStringLiteral("highest_SpeedIndex");
inline const QString SpeedEnablesRecord = QStringLiteral("speedEnables_Record");
inline const QString DifferentialSwing = QStringLiteral("DIFFERENTIAL_SWING");
inline const QString FfeMode = QStringLiteral("FFEMODE");
inline const QString FfeCm = QStringLiteral("FFE_CM");
inline const QString FfeC1 = QStringLiteral("FFE_C1");
inline const QString FfeC0 = QStringLiteral("FFE_C0");
inline const QString SdThreshold = QStringLiteral("SD_THRESHOLD");
inline const QString EqualizationMode = QStringLiteral("Equalization_Mode");
inline const QString Att = QStringLiteral("ATT");
inline const QString Boost = QStringLiteral("BOOST");
inline const QString LoopbackPorts = QStringLiteral("Loopback_Ports");
inline const QString DrpPorts = QStringLiteral("DRP_Ports");
inline const QString PrbsGeneratorPorts = QStringLiteral("PRBS_Pattern_Generator_Ports");
inline const QString DifferentialSwingPorts = QStringLiteral("Differential_Swing_Ports");
inline const QString FfePorts = QStringLiteral("FFE_Ports");
inline const QString PrbsCheckerPorts = QStringLiteral("PRBS_Pattern_Checker_Ports");
inline const QString EqualizationPorts = QStringLiteral("Equalization_Ports");
inline const QString BiasPorts = QStringLiteral("BIAS_Ports");
inline const QString ChangedAllOfBias = QStringLiteral("ifChangedAllOfBias");
} // namespace Key

// The one record format version this core writes and reads.
inline const QString FormatVersion = QStringLiteral("1.0");

enum class ValueType { Text, Bool, Int };

// A key of the record with its value type and the value a new core starts with.
struct KeySpec
{
    QString key;
    ValueType type;
    QVariant initial;
};

// Every key in record order: the order in which a dialog collects them.
const QVector<KeySpec> &recordKeys();
// The row of a key, or null for a text that is no key of the record.
const KeySpec *keySpec(const QString &key);
// The value a new core starts with under a key of the record.
QVariant initialValue(const QString &key);

// The loopback modes a lane offers, the first being the new core's.
const QStringList &loopbackModes();
// The transmitter swings a lane offers: "180mV" to "900mV" in steps of 48 mV.
const QStringList &differentialSwings();
// The receiver signal-detect thresholds: "25mV" to "200mV" in steps of 25 mV.
const QStringList &signalDetectThresholds();

// The two ways of setting the transmitter taps and the receiver equalizer.
inline const QString AutoMode = QStringLiteral("Auto");
inline const QString ManualMode = QStringLiteral("Manual");

// Where the 64B/66B coding of the fastest rates runs: in the transceiver or
// in the FPGA fabric.
inline const QString SerDesPlacement = QStringLiteral("SerDes");
inline const QString FabricPlacement = QStringLiteral("Fabric");

// The eight optional-port flags, in the order the define file tests them.
const QVector<QString> &optionalPortKeys();
// True when the record enables at least one optional port.
bool anyOptionalPort(const ConfigMap &record);

} // namespace Config
} // namespace IPCPRI
