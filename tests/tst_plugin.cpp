// Loading the plug-in as a host does: its metadata, its root object, the
// protocol objects it hands out and the descriptor they read.

#include "testrecords.h"

#include <config/descriptorkeys.h>
#include <plugin/cpri.h>

#include <dev/devicearg.h>
#include <ipserdes/protocolpackage.h>

#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using TestRecords::u;

namespace {

IPSERDESIP::ProtocolPackage *package(QPluginLoader &loader, const QString &dir)
{
    auto *root = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    if (root)
        root->packageDir = dir;
    return root;
}

// The folder, now holding a descriptor with this text (none for a null text).
QString withDescriptor(const QTemporaryDir &dir, const QByteArray &text)
{
    QFile file(dir.path() + u("/cpri.ipspec"));
    if (!text.isNull() && file.open(QIODevice::WriteOnly))
        file.write(text);
    return dir.path();
}

const QByteArray Required = "ipcore.id = i\nipcore.name = n\nipcore.version = 2\n";

} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    void metadataWithoutInstance_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("build tree") << CPRI_PLUGIN_PATH;
        if (qEnvironmentVariableIsSet("CPRI_STAGED_PLUGIN"))
            QTest::newRow("installed") << qEnvironmentVariable("CPRI_STAGED_PLUGIN");
    }

    void metadataWithoutInstance()
    {
        QFETCH(QString, path);
        QPluginLoader loader(path);
        const QJsonObject meta = loader.metaData();
        QCOMPARE(meta.value(u("IID")).toString(), u("IPCPRI.cpripackage/1.0"));
        QCOMPARE(meta.value(u("className")).toString(), u("cpripackage"));
        QVERIFY(meta.value(u("MetaData")).toObject().isEmpty());
        QVERIFY(!loader.isLoaded());
        const QList<IPSERDESIP::BaseProtocol *> protocols =
            package(loader, QFileInfo(path).absolutePath())->protocols();
        QCOMPARE(protocols.size(), 1);
        QCOMPARE(protocols.first()->name(), u("CPRI"));
        qDeleteAll(protocols);
    }

    void rootObjectIsSingleUntilDeleted()
    {
        QPluginLoader loader(u(CPRI_PLUGIN_PATH));
        QPointer<QObject> first = loader.instance();
        QVERIFY(first);
        QCOMPARE(loader.instance(), first.data());
        QCOMPARE(first->metaObject()->className(), "IPCPRI::cpripackage");
        delete first.data();
        QObject *second = loader.instance();
        QVERIFY(second);
        QCOMPARE(loader.instance(), second);
    }

    void metacastAnswers()
    {
        QPluginLoader loader(u(CPRI_PLUGIN_PATH));
        QObject *root = loader.instance();
        QVERIFY(root);
        QCOMPARE(root->qt_metacast(nullptr), nullptr);
        QCOMPARE(root->qt_metacast("IPCPRI::cpripackage"), static_cast<void *>(root));
        QCOMPARE(static_cast<QObject *>(static_cast<IPSERDESIP::ProtocolPackage *>(
                     root->qt_metacast(IPSERDESIP_ProtocolPackage_iid))), root);
        QCOMPARE(root->qt_metacast("QObject"), static_cast<void *>(root));
        QCOMPARE(root->qt_metacast("IPCPRI::cpri"), nullptr);
    }

    void protocolsAreNewObjects()
    {
        QPluginLoader loader(u(CPRI_PLUGIN_PATH));
        IPSERDESIP::ProtocolPackage *root = package(loader, u(CPRI_PACKAGE_DIR));
        const QList<IPSERDESIP::BaseProtocol *> both = root->protocols() + root->protocols();
        QCOMPARE(both.size(), 2);
        QVERIFY(both.first() != both.last());
        QVERIFY(!both.first()->parent());
        // No meta-object of its own: the protocol object reports its base's class.
        QCOMPARE(both.first()->metaObject()->className(), "IPSERDESIP::BaseProtocol");
        qDeleteAll(both);
        for (const char *bad : {"", "ipcore.id = x\nnot a line\n", "ipcore.id = x\nipcore.name = n\n"}) {
            QTemporaryDir dir;
            const QByteArray text = *bad ? QByteArray(bad) : QByteArray();
            QVERIFY2(package(loader, withDescriptor(dir, text))->protocols().isEmpty(), bad);
        }
    }

    void descriptorAnswers_data()
    {
        QTest::addColumn<QByteArray>("descriptor");
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("answers"); // id|name|version|categories|summary|supported
        QTest::newRow("every key") << Required + "ipcore.category += a\nipcore.category += b\n"
                                      "ipcore.doc.summary = s\nipcore.dir.data = /else\n"
                                   << "P" << "i|n|2|a,b|s|true";
        QTest::newRow("keys missing") << Required << "Q" << "i|n|2|||true";
        // The host refuses what its second argument names, whatever its third says.
        QTest::newRow("device in both lists") << Required + "ipcore.device.supported += P\n"
                                                 "ipcore.device.unsupported += P\n"
                                              << "P" << "i|n|2|||false";
        QTest::newRow("device supported") << Required + "ipcore.device.supported += P\n" << "P"
                                          << "i|n|2|||true";
        QTest::newRow("device not listed") << Required + "ipcore.device.supported += P\n" << "Q"
                                           << "i|n|2|||false";
    }

    void descriptorAnswers()
    {
        QFETCH(QByteArray, descriptor);
        QFETCH(QString, part);
        QFETCH(QString, answers);
        QTemporaryDir dir;
        IPCPRI::cpri protocol(withDescriptor(dir, descriptor));
        QVERIFY(protocol.loadDescriptor());
        const bool supported = protocol.isDeviceSupported(DEV::DeviceArg(u("id"), part, u("C2/I1")));
        QCOMPARE(QStringList({protocol.id(), protocol.name(), protocol.version(),
                              protocol.category().join(u(",")), protocol.summary(),
                              supported ? u("true") : u("false")}).join(u("|")), answers);
        QCOMPARE(protocol.descriptor().value(IPCPRI::Descriptor::DataDir).toString(),
                 dir.path() + u("/data"));
    }
};

QTEST_MAIN(TestPlugin)
#include "tst_plugin.moc"
