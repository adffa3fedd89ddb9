#include "recordrules.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/namerules.h>
#include <ipserdes/protocolgendlg.h>
#include <ipserdes/serdes.h>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;

// How to fix a record the dialog would complete or change.
const QString FixHint = QStringLiteral(
    "; cpri-host dialog --edit RECORD --accept --out FIXED writes the dialog's own record");

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

QString controlProblem(const QMap<QString, QVariant> &record)
{
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        const QString found = it.value().userType() == QMetaType::QString
                                  ? controlCharacter(it.value().toString())
                                  : QString();
        if (!found.isEmpty())
            return QStringLiteral("\"%1\" holds the control character %2").arg(it.key(), found);
    }
    return QString();
}

// A text the record holds, if it holds one under the key.
QString textOr(const QMap<QString, QVariant> &record, const QString &key, const QString &fallback)
{
    const QVariant value = record.value(key);
    return value.userType() == QMetaType::QString ? value.toString() : fallback;
}

} // namespace

RecordRules::RecordRules(IPSERDESIP::BaseProtocol &protocol,
                         const QMap<QString, QVariant> &descriptor)
    : m_protocol(protocol), m_descriptor(descriptor)
{}

IPCPRI::RecordCheck::Frame RecordRules::frameFor(const QMap<QString, QVariant> &record) const
{
    using Dialog = IPSERDESIP::protocolGenDlg;
    IPCPRI::RecordCheck::Frame frame;
    const QString id = record.value(Key::TargetDevice).toString();
    if (!id.isEmpty())
        frame.device = Core::IdeCore::deviceDataBase()->findDevice(id);
    if (frame.device.isNull())
        frame.device = IPSERDESIP::serdes::instance()->device();
    // The frame's lists keep their first entry for a text they do not hold.
    const QString tool = record.value(Key::SynthesisTool).toString();
    frame.synthesisTool =
        Dialog::synthesisTools().contains(tool) ? tool : Dialog::synthesisTools().value(0);
    const int language = record.value(Key::Language).toInt();
    frame.languageIndex = language >= 0 && language < Dialog::languages().size() ? language : 0;
    frame.file =
        textOr(record, Key::File, m_descriptor.value(IPCPRI::Descriptor::Target).toString());
    frame.module =
        textOr(record, Key::Module, m_descriptor.value(IPCPRI::Descriptor::Module).toString());
    frame.fileProblem = IPSERDESIP::NameRules::fileNameProblems(frame.file).value(0);
    frame.moduleProblem = IPSERDESIP::NameRules::moduleNameProblem(frame.module);
    return frame;
}

QString RecordRules::problem(const QMap<QString, QVariant> &record) const
{
    if (record.isEmpty())
        return QStringLiteral("the record is empty: nothing to generate");
    const QString control = controlProblem(record);
    if (!control.isEmpty())
        return control;
    const IPCPRI::RecordCheck::Frame frame = frameFor(record);
    if (!m_protocol.isDeviceSupported(frame.device))
        return QStringLiteral("\"%1\" is %2: the %3 core does not support the part \"%4\"")
            .arg(Key::TargetDevice,
                 record.contains(Key::TargetDevice)
                     ? QLatin1Char('"') + record.value(Key::TargetDevice).toString()
                           + QLatin1Char('"')
                     : QStringLiteral("missing"),
                 m_protocol.name(), frame.device.device());
    const IPCPRI::RecordCheck::Finding found =
        IPCPRI::RecordCheck(m_protocol.id(), frame).check(record);
    return found.kind == IPCPRI::RecordCheck::Finding::Missing ? found.text + FixHint : found.text;
}

} // namespace CpriHost
