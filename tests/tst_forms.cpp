// placeholder, being written
#include <QTest>
class TestForms : public QObject { Q_OBJECT };
QTEST_MAIN(TestForms)
#include "tst_forms.moc"
