// Fuzz target: generation's lines and resource record of a JSON record. For a record cpri-host
// takes, lines are single lines, defines hold one directive and a numeric clock period, and
// setting lines pass the generator's check whenever the reference frequency is a number.

#include <recordfile.h>
#include <recordrules.h>

#include <config/configkeys.h>
#include <core/idecore.h>
#include <dev/devicedb.h>
#include <generate/definefiles.h>
#include <generate/synthesisoptions.h>
#include <ipserdes/generator.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>
#include <plugin/cpri.h>
#include <serdes/resourcenames.h>
#include <serdes/resourcerecord.h>

#include <cmath>
#include <cstdlib>

using namespace IPCPRI;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ConfigMap record;
    QString error;
    const auto json = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    if (!CpriHost::RecordFile::parse(json, QStringLiteral("input"), record, error))
        return 0;
    const DEV::DeviceArg device = Core::IdeCore::deviceDataBase()->findDevice(
        record.value(Config::Key::TargetDevice).toString());
    const QString part = device.device();
    const QStringList settings = Generate::settingLines(record, part);
    const QStringList defines = Generate::topDefines(record) + Generate::coreDefines(record);
    const QStringList lines = defines + Generate::synthesisOptions(record) + settings;
    delete Serdes::resourceRecord(QStringLiteral("cpri"), record);
    // The record is checked in a project of its device that holds nothing else.
    static cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    static const bool loaded = protocol.loadDescriptor();
    IPSERDESIP::serdes::instance()->reset();
    IPSERDESIP::serdes::instance()->setDevice(device);
    if (!loaded
        || !CpriHost::RecordRules(protocol, protocol.descriptor()).problem(record).isEmpty())
        return 0;
    for (const QString &line : lines) {
        if (line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')))
            std::abort();
    }
    for (const QString &line : defines) {
        const QString period = line.section(QStringLiteral("CFG_CLK_PERIOD "), 1);
        if (line.count(QLatin1Char('`')) != 1
            || (!period.isEmpty() && !std::isfinite(period.toDouble())))
            std::abort();
    }
    bool ok = false;
    const double frequency = record.value(Config::Key::RefClkFrequency).toString().toDouble(&ok);
    if (ok && std::isfinite(frequency) && frequency > 0
        && !IPSERDESIP::generator::checkSettings(settings).isEmpty())
        std::abort();
    return 0;
}
