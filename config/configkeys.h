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
extern const QString TargetDevice;
extern const QString Type;
extern const QString Version;
extern const QString SynthesisTool;
extern const QString Language;
extern const QString File;
extern const QString Module;
extern const QString SpeedSel3072;
extern const QString SpeedSel6144;
extern const QString SpeedSel98304;
extern const QString SpeedSel101376;
extern const QString SpeedSel1216512;
extern const QString Rate06144;
extern const QString Rate12288;
extern const QString Rate24576;
extern const QString Rate3072;
extern const QString Rate49152;
extern const QString Rate6144;
extern const QString Rate98304;
extern const QString Rate811008;
extern const QString Rate101376;
extern const QString Rate1216512;
extern const QString ConfigClkPeriod;
extern const QString Mii;
extern const QString Gmii;
extern const QString ProtocolVersion1;
extern const QString ProtocolVersion2;
extern const QString ScramblerSeed;
extern const QString HdlcRate;
extern const QString HdlcByte;
extern const QString HdlcMask;
extern const QString EthernetPointer;
extern const QString FixedConfigEnable;
extern const QString RealTimeVendor;
extern const QString Master;
extern const QString Slave;
extern const QString ChannelSelection;
extern const QString LineRate;
extern const QString RefClkSource;
extern const QString RefClkFrequency;
extern const QString PllSelection;
extern const QString LoopbackMode;
extern const QString Mode64b66b;
extern const QString HighestSpeedIndex;
extern const QString SpeedEnablesRecord;
extern const QString DifferentialSwing;
extern const QString FfeMode;
extern const QString FfeCm;
extern const QString FfeC1;
extern const QString FfeC0;
extern const QString SdThreshold;
extern const QString EqualizationMode;
extern const QString Att;
extern const QString Boost;
extern const QString LoopbackPorts;
extern const QString DrpPorts;
extern const QString PrbsGeneratorPorts;
extern const QString DifferentialSwingPorts;
extern const QString FfePorts;
extern const QString PrbsCheckerPorts;
extern const QString EqualizationPorts;
extern const QString BiasPorts;
extern const QString ChangedAllOfBias;
} // namespace Key

// The one record format version this core writes and reads.
extern const QString FormatVersion;

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
extern const QString AutoMode;
extern const QString ManualMode;

// Where the 64B/66B coding of the fastest rates runs: in the transceiver or
// in the FPGA fabric.
extern const QString SerDesPlacement;
extern const QString FabricPlacement;

// The eight optional-port flags, in the order the define file tests them.
const QVector<QString> &optionalPortKeys();
// True when the record enables at least one optional port.
bool anyOptionalPort(const ConfigMap &record);

} // namespace Config
} // namespace IPCPRI
