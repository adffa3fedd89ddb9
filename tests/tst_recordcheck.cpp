// The check of stored records against the dialog itself: records the
// dialog wrote in random runs, each with one field changed as a user
// editing the file might, are opened in the real dialog and accepted; the
// check must say what the dialog does with them.

#include "dialogfixture.h"

#include <recordrules.h>

#include <dialog/recordcheck.h>
#include <plugin/cpri.h>

#include <QRandomGenerator>

namespace {

using IPCPRI::RecordCheck;
using Finding = RecordCheck::Finding;

const QStringList Devices = split("DVA-1-C2I1 DVA-2-I2 DVB-1-C2I1 DVB-4-C1 DVC-1-C2I1", ' ');

// What other cores of the project hold before the core is opened.
const QStringList Projects = {"",
                              "",
                              "pll:Q0_QPLL0:10.1376",
                              "ref:Q0 REFCLK0:156.25:1",
                              "data:Q0_BIAS:12",
                              "lane:Q0 Lane0",
                              "pll:Q0_QPLL1:9.8304"};

// A registry that holds the device and what the project's set-up names.
void prepare(const DEV::DeviceArg &device, const QString &setup, const QString &workDir)
{
    registry()->reset();
    registry()->setDevice(device);
    registry()->setWorkingDir(workDir);
    const QStringList s = split(setup, ':');
    if (s.value(0) == "pll")
        registry()->enablePll(s[1], s[2].toDouble());
    else if (s.value(0) == "ref")
        registry()->fixReference(s[1], s[2].toDouble(), s[3].toInt());
    else if (s.value(0) == "data")
        registry()->setData(s[1], s[2].toInt());
    else if (s.value(0) == "lane")
        registry()->occupyLane(s[1]);
}

struct Outcome
{
    Record record; // empty when the dialog refused the record
    QStringList boxes;
};

// Runs the dialog on a saved record (or a new one) and presses OK after the
// user's steps; every question is answered Yes.
Outcome runDialog(const QMap<QString, QVariant> &descriptor, const DEV::DeviceArg &device,
                  const Record *saved, const QString &steps = QString())
{
    CpriHost::ModalDriver user;
    user.setAnswer(QMessageBox::Yes);
    user.start();
    Record result;
    cpridlg d(descriptor, &result, nullptr);
    bool opened = true;
    if (saved)
        opened = d.setOpening(*saved);
    else
        d.setCreating("cpri_0", device);
    if (opened) {
        act(&d, steps);
        QMetaObject::invokeMethod(&d, "accept");
    }
    user.stop();
    Outcome outcome{d.result() == QDialog::Accepted ? result : Record(), {}};
    for (const CpriHost::ModalDriver::SeenBox &box : user.seenBoxes())
        outcome.boxes << box.title + ": " + box.text;
    return outcome;
}

template<typename T>
T pick(QRandomGenerator &random, const QList<T> &items)
{
    return items.at(int(random.bounded(items.size())));
}

// What a user clicks, picks and types before pressing OK.
QString randomSteps(QRandomGenerator &random)
{
    QStringList steps{pick(random, Classes), pick(random, Rates)};
    const QStringList choices = split(
        "ChannelSel=Q0 Lane1|ChannelSel=Q1 Lane2|PLL_Selection=QPLL1|PLL_Selection=CPLL|"
        "refClkSource=Q0 REFCLK1|refClkSource=MCLK|refClkFreq=156.25|refClkFreq=153.6|GMII|"
        "ProtocolVersion2|FixedConfigEnable|RealTimeVendor|checkBoxDRPPort|checkBoxLoopBackPorts|"
        "LoopbackMode=LB_NES|comboBox64B_66B_Mode=Fabric|differeSwingComboBox=228mV|"
        "ffeModeCombox=Manual;cmSpinBox=4;c1SpinBox=3|sdThresholdComboBox=25mV|"
        "equalizationModeCombox=Manual;attSpinBox=2;boostSpinBox=15|ScramblerSeed=1F2E3D4C|"
        "EthernetPointer=3F|HDLCRate=7|ConfigClkPeriod=125|biasSpinBox=11",
        '|');
    for (int i = int(random.bounded(6)); i > 0; --i)
        steps << pick(random, choices);
    return steps.join(';');
}

// One field changed as a user editing the file might: a flipped box, another
// offered value, a stale mask or index, a number out of range, a missing or
// misspelt key, another version.
Record changeOne(QRandomGenerator &random, Record r)
{
    const QVector<IPCPRI::Config::KeySpec> &keys = IPCPRI::Config::recordKeys();
    const QString key = keys.at(int(random.bounded(keys.size()))).key;
    switch (random.bounded(6)) {
    case 0:
        r.remove(key);
        break;
    case 1:
        r.insert(key.toLower() == key ? key.toUpper() : key.toLower(), r.take(key));
        break;
    case 2:
        r.insert("version", pick(random, split("0.9 2.0 1.00", ' ')));
        break;
    default:
        if (r.value(key).type() == QVariant::Bool)
            r.insert(key, !r.value(key).toBool());
        else if (r.value(key).type() == QVariant::Int)
            r.insert(key, r.value(key).toInt() + int(random.bounded(25)) - 12);
        else
            r.insert(key,
                     pick(random, split("Q1 Lane0|Manual|Fabric|LB_FES|CPLL|QPLL1|MCLK|"
                                        "Q0 REFCLK1|6.14400Gbps|000000100000|30|100|600|"
                                        "228mV|25mV|1f|7FFFFFFF|x1y2z|ABCDEFGHIJ|cpri_x|com.x|",
                                        '|')));
    }
    return r;
}

// The keys two records hold differently: "key: a -> b".
QString difference(const Record &a, const Record &b)
{
    QStringList keys = a.keys() + b.keys(), lines;
    keys.removeDuplicates();
    for (const QString &key : keys) {
        if (a.value(key) != b.value(key) || a.contains(key) != b.contains(key))
            lines << key + ": " + a.value(key, "(none)").toString() + " -> "
                         + b.value(key, "(none)").toString();
    }
    return lines.join(", ");
}

} // namespace

class TestRecordCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(protocol.loadDescriptor());
        QVERIFY(work.isValid());
    }

    // Several hundred records: the check hands back what the dialog hands
    // back, refuses what it refuses, and passes exactly the records the
    // dialog returns unchanged (a value the dialog keeps only when loaded,
    // not when typed, is refused as well).
    void changedRecordsAsTheDialogTakesThem()
    {
        QRandomGenerator random(qEnvironmentVariableIntValue("SEED")
                                    ? quint32(qEnvironmentVariableIntValue("SEED"))
                                    : 20261123u);
        const CpriHost::RecordRules rules(protocol, protocol.descriptor());
        int checked = 0, passed = 0;
        while (checked < 300) {
            const auto device = Core::IdeCore::deviceDataBase()->findDevice(pick(random, Devices));
            const QString setup = pick(random, Projects);
            prepare(device, setup, work.path());
            const Outcome written =
                runDialog(protocol.descriptor(), device, nullptr, randomSteps(random));
            if (written.record.isEmpty())
                continue;
            for (int i = 0; i < 10; ++i, ++checked) {
                const Record edited = changeOne(random, written.record);
                prepare(device, setup, work.path());
                const RecordCheck check(protocol.id(), rules.frameFor(edited));
                QString refusal;
                const Record model = check.handedBack(edited, &refusal);
                const Finding finding = check.check(edited);
                prepare(device, setup, work.path());
                const Outcome real = runDialog(protocol.descriptor(), device, &edited);
                const QString context = "changed " + difference(written.record, edited) + " on "
                                        + device.id() + " with " + setup + " | dialog "
                                        + difference(edited, real.record) + " / "
                                        + real.boxes.join(" / ") + " | check "
                                        + difference(edited, model) + " / " + refusal;
                QVERIFY2(model == real.record, qPrintable(context));
                const bool same = !real.record.isEmpty() && real.record == edited;
                QVERIFY2(finding.isNone() ? same : (!same || finding.kind == Finding::Kept),
                         qPrintable(finding.text + " | " + context));
                passed += finding.isNone();
            }
        }
        qInfo("%d changed records, %d of them as the dialog writes them", checked, passed);
    }

private:
    IPCPRI::cpri protocol{CPRI_PACKAGE_DIR ""};
    QTemporaryDir work;
};

QTEST_MAIN(TestRecordCheck)
#include "tst_recordcheck.moc"
