// The plug-in as a host meets it: its root object, loaded from the build and
// from an installation, the protocol object it offers for a descriptor, and
// the create and edit flows of that object.

#include "testrecords.h"

#include <config/descriptorkeys.h>
#include <modaldriver.h>
#include <plugin/cpri.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipserdes/protocolpackage.h>
#include <ipserdes/serdes.h>

#include <QAbstractButton>
#include <QDialog>
#include <QJsonObject>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QTest>

using namespace TestRecords;
using IPCPRI::ConfigMap;

namespace {

// The plug-in's root object with its package folder set; the folder gets a
// descriptor of the given text unless that is null.
IPSERDESIP::ProtocolPackage *package(QPluginLoader &loader, const QString &dir,
                                     const QByteArray &descriptor = QByteArray())
{
    QFile file(dir + "/cpri.ipspec");
    if (!descriptor.isNull() && file.open(QIODevice::WriteOnly))
        file.write(descriptor);
    auto *root = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    root->packageDir = dir;
    return root;
}

} // namespace

class TestProtocol : public QObject
{
    Q_OBJECT

private slots:
    void rootObject()
    {
        QPluginLoader loader(QString(CPRI_PLUGIN_PATH));
        const QJsonObject meta = loader.metaData();
        QCOMPARE(meta.value("IID").toString(), "IPCPRI.cpripackage/1.0");
        QCOMPARE(meta.value("className").toString(), "cpripackage");
        QVERIFY(meta.value("MetaData").toObject().isEmpty() && !loader.isLoaded());
        QObject *root = loader.instance();
        QVERIFY(root == loader.instance() && !root->qt_metacast(nullptr));
        QCOMPARE(root->metaObject()->className(), "IPCPRI::cpripackage");
        for (const char *name : {"IPCPRI::cpripackage", IPSERDESIP_ProtocolPackage_iid, "QObject"})
            QCOMPARE(root->qt_metacast(name), static_cast<void *>(root));
        QCOMPARE(root->qt_metacast("IPCPRI::cpri"), nullptr);
        delete root;
        QVERIFY(loader.instance() && loader.instance() == loader.instance());
        QPluginLoader installed(qEnvironmentVariable("CPRI_STAGED_PLUGIN"));
        auto both = package(loader, QString(CPRI_PACKAGE_DIR))->protocols();
        both += package(installed, QFileInfo(installed.fileName()).path())->protocols();
        QVERIFY(both.size() == 2 && both.first() != both.last() && !both.first()->parent());
        // No meta-object of its own: the protocol object reports its base's class.
        QCOMPARE(both.first()->metaObject()->className(), "IPSERDESIP::BaseProtocol");
        qDeleteAll(both);
    }

    // Descriptor text -> id|name|version|categories|summary|part P supported, or no protocol.
    void protocolsReadTheDescriptor()
    {
        const QByteArray ok = "ipcore.id = i\nipcore.name = n\nipcore.version = 2\n";
        const QList<QPair<QByteArray, const char *>> rows = {
            // clang-format off
            {QByteArray(), "none"},
            {"ipcore.id=x\nnot a line\n", "none"},
            {"ipcore.id=x", "none"},
            {ok + "ipcore.category += a\nipcore.category += b\nipcore.doc.summary = s\nipcore.dir.data = /else\nipcore.device.supported += P\n", "i|n|2|a,b|s|true"},
            {ok, "i|n|2|||true"},
            {ok + "ipcore.device.supported+=P\nipcore.device.unsupported+=P\n", "i|n|2|||false"},
            // clang-format on
        };
        for (const auto &row : rows) {
            QTemporaryDir dir;
            QPluginLoader loader(QString(CPRI_PLUGIN_PATH));
            const auto protocols = package(loader, dir.path(), row.first)->protocols();
            QString answers = "none";
            for (IPSERDESIP::BaseProtocol *p : protocols) {
                answers =
                    QStringList(
                        {p->id(), p->name(), p->version(), p->category().join(","), p->summary(),
                         QVariant(p->isDeviceSupported(DEV::DeviceArg("id", "P", "C"))).toString()})
                        .join("|");
                QCOMPARE(static_cast<IPCPRI::cpri *>(p)
                             ->descriptor()
                             .value(IPCPRI::Descriptor::DataDir)
                             .toString(),
                         dir.path() + "/data");
            }
            QCOMPARE(answers, QString(row.second));
            qDeleteAll(protocols);
        }
    }

    // A fresh dialog per request; its record is returned only when the user accepts. A
    // cancelled dialog leaves the object's record as it was unless it calculated, and a record
    // of another version never reaches a dialog.
    void dialogFlows()
    {
        QTemporaryDir work;
        IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
        registry->reset();
        registry->setWorkingDir(work.path());
        registry->setData("Q0_BIAS", 3);
        registry->setData("Q1_BIAS", 12);
        IPCPRI::cpri protocol(QString(CPRI_PACKAGE_DIR));
        QStringList settings, ignored, options;
        QString message; // generation leaves a record in the protocol object
        QVERIFY(protocol.loadDescriptor()
                && protocol.generate(away(), settings, ignored, options, message, false));
        const DEV::DeviceArg device = Core::IdeCore::deviceDataBase()->findDevice("DVA-1-C2I1");
        registry->setDevice(device);
        const QStringList clicks = lines("speedSel98304 speedEnable98304|speedSel3072 Calculate|"
                                         "speedSel98304 speedEnable98304|"
                                         "speedSel98304 speedEnable98304 okButton");
        int shown = 0;
        CpriHost::ModalDriver driver;
        driver.setDialogHandler([&](QDialog *dialog) {
            QVERIFY(!dialog->findChild<QAbstractButton *>("speedSel3072")->isChecked());
            for (const QString &name : clicks.value(shown++).split(" "))
                dialog->findChild<QAbstractButton *>(name)->click();
            if (dialog->isVisible())
                dialog->reject();
        });
        driver.start();
        QVERIFY(protocol.createConfig("cpri_0", device).isEmpty());
        QCOMPARE(protocol.configuration(), away()); // neither cleared nor collected
        QVERIFY(protocol.createConfig("cpri_0", device).isEmpty());
        QVERIFY(!protocol.configuration().isEmpty() && protocol.configuration() != away());
        QVERIFY(protocol.editConfig(with(initial(), "target_device=DVA-1-C2I1")).isEmpty());
        QVERIFY(protocol.editConfig(with(initial(), "version=1.1")).isEmpty()); // never shown
        const ConfigMap created = protocol.createConfig("cpri_1", device);
        QVERIFY(created == protocol.configuration() && shown == 4);
        QCOMPARE(created.value("target_device").toString(), "DVA-1-C2I1");
    }
};

QTEST_MAIN(TestProtocol)
#include "tst_protocol.moc"
