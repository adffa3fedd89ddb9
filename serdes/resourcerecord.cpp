#include "resourcerecord.h"

#include "resourcenames.h"
#include "../config/linerates.h"

#include <ipserdes/message.h>

namespace IPCPRI {
namespace Serdes {

namespace {
const QString InstanceSeparator = QStringLiteral(":");
const QString UnusedEntry = QStringLiteral("0");
} // namespace

IPSERDESIP::Message *resourceRecord(const QString &coreName, const ConfigMap &record)
{
    namespace Key = Config::Key;
    auto *message = new IPSERDESIP::Message;
    message->coreName = coreName;
    const QString module = record.value(Key::Module).toString();
    const QString file = record.value(Key::File).toString();
    message->instanceName = file + InstanceSeparator + module;
    message->moduleValue = module;
    message->fileValue = file;
    const Route used = route(
        record.value(Key::ChannelSelection).toString(), record.value(Key::PllSelection).toString(),
        record.value(Key::RefClkSource).toString(), record.value(Key::RefClkFrequency).toString());
    message->laneList = used.lanes;
    message->pllList = used.plls;
    message->refClockList = used.refClocks;
    message->refFreqList = used.refFrequencies;
    message->lineRates << Config::withoutUnit(record.value(Key::LineRate).toString());
    message->auxList1 << UnusedEntry;
    message->auxList2 << UnusedEntry;
    return message;
}

} // namespace Serdes
} // namespace IPCPRI
