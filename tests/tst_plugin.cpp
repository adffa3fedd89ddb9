// Loading the plug-in as a host does, its root object and protocol objects.

#include <config/descriptorkeys.h>
#include <plugin/cpri.h>

#include <dev/devicearg.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/protocolpackage.h>

#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using IPCPRI::cpri;

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    void metadataIsReadableWithoutInstance_data();
    void metadataIsReadableWithoutInstance();
    void rootObjectIsSingleUntilDeleted();
    void metacastAnswers();
    void protocolsHandsOutNewObjects();
    void badPackageDirGivesNoProtocol_data();
    void badPackageDirGivesNoProtocol();
    void descriptorGetters();
    void missingDescriptorKeysGiveEmptyValues();
    void dataDirIsAlwaysThePackagesOwn();
    void deviceSupportFollowsDescriptorLists_data();
    void deviceSupportFollowsDescriptorLists();

private:
    static void writeDescriptor(const QString &dir, const QByteArray &text);
};

void TestPlugin::writeDescriptor(const QString &dir, const QByteArray &text)
{
    QFile file(dir + QStringLiteral("/cpri.ipspec"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void TestPlugin::metadataIsReadableWithoutInstance_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("build tree") << QStringLiteral(CPRI_PLUGIN_PATH);
    const QString staged = qEnvironmentVariable("CPRI_STAGED_PLUGIN");
    if (!staged.isEmpty())
        QTest::newRow("installed") << staged;
}

void TestPlugin::metadataIsReadableWithoutInstance()
{
    QFETCH(QString, path);
    QPluginLoader loader(path);
    const QJsonObject meta = loader.metaData();
    QCOMPARE(meta.value(QStringLiteral("IID")).toString(), QStringLiteral("IPCPRI.cpripackage/1.0"));
    QCOMPARE(meta.value(QStringLiteral("className")).toString(), QStringLiteral("cpripackage"));
    QVERIFY(meta.value(QStringLiteral("MetaData")).toObject().isEmpty());
    QVERIFY(!loader.isLoaded());

    QObject *root = loader.instance();
    QVERIFY2(root, qPrintable(loader.errorString()));
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(root);
    QVERIFY(package);
    package->packageDir = QFileInfo(path).absolutePath();
    QList<IPSERDESIP::BaseProtocol *> protocols = package->protocols();
    QCOMPARE(protocols.size(), 1);
    QCOMPARE(protocols.first()->name(), QStringLiteral("CPRI"));
    qDeleteAll(protocols);
}

void TestPlugin::rootObjectIsSingleUntilDeleted()
{
    QPluginLoader loader(QStringLiteral(CPRI_PLUGIN_PATH));
    QPointer<QObject> first = loader.instance();
    QVERIFY(first);
    QCOMPARE(loader.instance(), first.data());
    QCOMPARE(QString::fromLatin1(first->metaObject()->className()),
             QStringLiteral("IPCPRI::cpripackage"));
    delete first.data();
    QVERIFY(first.isNull());
    QObject *second = loader.instance();
    QVERIFY(second);
    QCOMPARE(loader.instance(), second);
}

void TestPlugin::metacastAnswers()
{
    QPluginLoader loader(QStringLiteral(CPRI_PLUGIN_PATH));
    QObject *root = loader.instance();
    QVERIFY(root);
    QCOMPARE(root->qt_metacast(nullptr), nullptr);
    QCOMPARE(root->qt_metacast("IPCPRI::cpripackage"), static_cast<void *>(root));
    auto *package = static_cast<IPSERDESIP::ProtocolPackage *>(
        root->qt_metacast(IPSERDESIP_ProtocolPackage_iid));
    QCOMPARE(static_cast<QObject *>(package), root);
    QCOMPARE(root->qt_metacast("QObject"), static_cast<void *>(root));
    QCOMPARE(root->qt_metacast("IPSERDESIP::ProtocolPackage"), static_cast<void *>(root));
    QCOMPARE(root->qt_metacast("IPCPRI::cpri"), nullptr);
}

void TestPlugin::protocolsHandsOutNewObjects()
{
    QPluginLoader loader(QStringLiteral(CPRI_PLUGIN_PATH));
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    QVERIFY(package);
    package->packageDir = QStringLiteral(CPRI_PACKAGE_DIR);
    QList<IPSERDESIP::BaseProtocol *> first = package->protocols();
    QList<IPSERDESIP::BaseProtocol *> second = package->protocols();
    QCOMPARE(first.size(), 1);
    QCOMPARE(second.size(), 1);
    QVERIFY(first.first() != second.first());
    QVERIFY(!first.first()->parent());
    // The protocol object reports the base's class: it has no meta-object of its own.
    QCOMPARE(QString::fromLatin1(first.first()->metaObject()->className()),
             QStringLiteral("IPSERDESIP::BaseProtocol"));
    qDeleteAll(first + second);
}

void TestPlugin::badPackageDirGivesNoProtocol_data()
{
    QTest::addColumn<QByteArray>("descriptor");
    QTest::newRow("no descriptor") << QByteArray();
    QTest::newRow("syntax error") << QByteArray("ipcore.id = x\nnot a line\n");
    QTest::newRow("no version") << QByteArray("ipcore.id = x\nipcore.name = CPRI\n");
}

void TestPlugin::badPackageDirGivesNoProtocol()
{
    QFETCH(QByteArray, descriptor);
    QTemporaryDir dir;
    if (!descriptor.isEmpty())
        writeDescriptor(dir.path(), descriptor);
    QPluginLoader loader(QStringLiteral(CPRI_PLUGIN_PATH));
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    QVERIFY(package);
    package->packageDir = dir.path();
    QVERIFY(package->protocols().isEmpty());
}

void TestPlugin::descriptorGetters()
{
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    QCOMPARE(protocol.name(), QStringLiteral("CPRI"));
    QVERIFY(!protocol.id().isEmpty());
    QVERIFY(!protocol.version().isEmpty());
    QCOMPARE(protocol.category(),
             QStringList({QStringLiteral("Communication"), QStringLiteral("SERDES Protocols")}));
    QVERIFY(protocol.summary().contains(QStringLiteral("CPRI")));
    const QMap<QString, QVariant> info = protocol.descriptor();
    for (const QString &key : {IPCPRI::Descriptor::Label, IPCPRI::Descriptor::Module,
                               IPCPRI::Descriptor::Target, IPCPRI::Descriptor::Help})
        QVERIFY2(!info.value(key).toString().isEmpty(), qPrintable(key));
}

void TestPlugin::missingDescriptorKeysGiveEmptyValues()
{
    QTemporaryDir dir;
    writeDescriptor(dir.path(), "ipcore.id = a\nipcore.name = b\nipcore.version = 2\n");
    cpri protocol(dir.path());
    QVERIFY(protocol.loadDescriptor());
    QVERIFY(protocol.category().isEmpty());
    QVERIFY(protocol.summary().isEmpty());
    QCOMPARE(protocol.version(), QStringLiteral("2"));
}

void TestPlugin::dataDirIsAlwaysThePackagesOwn()
{
    QTemporaryDir dir;
    writeDescriptor(dir.path(), "ipcore.id = a\nipcore.name = b\nipcore.version = 2\n"
                          "ipcore.dir.data = /somewhere/else\n");
    cpri protocol(dir.path());
    QVERIFY(protocol.loadDescriptor());
    QCOMPARE(protocol.descriptor().value(IPCPRI::Descriptor::DataDir).toString(),
             dir.path() + QStringLiteral("/data"));
}

void TestPlugin::deviceSupportFollowsDescriptorLists_data()
{
    QTest::addColumn<QByteArray>("lists");
    QTest::addColumn<QString>("part");
    QTest::addColumn<bool>("supported");
    // The unsupported list is the second argument of the host's check: a
    // device named by it is refused even when the supported list names it.
    QTest::newRow("in both lists") << QByteArray("ipcore.device.supported += P\n"
                                                 "ipcore.device.unsupported += P\n")
                                   << "P" << false;
    QTest::newRow("supported only") << QByteArray("ipcore.device.supported += P\n") << "P" << true;
    QTest::newRow("not listed") << QByteArray("ipcore.device.supported += P\n") << "Q" << false;
    QTest::newRow("no lists") << QByteArray() << "Q" << true;
}

void TestPlugin::deviceSupportFollowsDescriptorLists()
{
    QFETCH(QByteArray, lists);
    QFETCH(QString, part);
    QFETCH(bool, supported);
    QTemporaryDir dir;
    writeDescriptor(dir.path(), "ipcore.id = a\nipcore.name = b\nipcore.version = 2\n" + lists);
    cpri protocol(dir.path());
    QVERIFY(protocol.loadDescriptor());
    QCOMPARE(protocol.isDeviceSupported(DEV::DeviceArg(QStringLiteral("id"), part,
                                                       QStringLiteral("C2/I1"))),
             supported);
}

QTEST_MAIN(TestPlugin)
#include "tst_plugin.moc"
