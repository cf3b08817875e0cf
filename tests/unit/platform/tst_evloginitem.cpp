#include "TestMain.h"

#include "platform/EVLoginItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

// An executable file at the path, made with its folder.
QString makeExecutable(const QString &path)
{
    writeFile(path, "#!/bin/sh\n");
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);
    return path;
}

ino_t inode(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

QByteArray execLine(const QByteArray &entry)
{
    for (const QByteArray &line : entry.split('\n')) {
        if (line.startsWith("Exec="))
            return line.mid(5);
    }
    return QByteArray();
}

// Makes a folder unwritable for the lifetime of the object. Root writes through permission
// bits, so for root the folder is also made immutable.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &path)
        : m_path(QFile::encodeName(path))
    {
        m_made = ::chmod(m_path.constData(), 0555) == 0 && (::geteuid() != 0 || setImmutable(true));
    }
    ~ReadOnlyFolder()
    {
        if (::geteuid() == 0)
            setImmutable(false);
        ::chmod(m_path.constData(), 0755);
    }
    ReadOnlyFolder(const ReadOnlyFolder &) = delete;
    ReadOnlyFolder &operator=(const ReadOnlyFolder &) = delete;

    bool isMade() const { return m_made; }

private:
    bool setImmutable(bool on)
    {
        const int fd = ::open(m_path.constData(), O_RDONLY | O_DIRECTORY);
        if (fd < 0)
            return false;
        int flags = 0;
        bool done = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        done = done && ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
        ::close(fd);
        return done;
    }

    QByteArray m_path;
    bool m_made = false;
};

} // namespace

class TestEVLoginItem : public QObject
{
    Q_OBJECT

private:
    std::optional<TestHome> m_home;
    std::optional<ScopedEnvironment> m_path;
    QString m_executable;

    QString homePath(const QString &relative) const { return m_home->path() + u'/' + relative; }

private Q_SLOTS:
    // A fresh home with the executable installed under it, and a PATH that does not find it.
    void init()
    {
        m_home.emplace();
        m_path.emplace("PATH", QFile::encodeName(homePath(QStringLiteral("empty-bin"))));
        m_executable = makeExecutable(homePath(QStringLiteral("opt/tallyvane/bin/tallyvane")));
    }

    void cleanup()
    {
        m_path.reset();
        m_home.reset();
    }

    void entryLivesInTheConfigFolder()
    {
        QCOMPARE(EVLoginItem::entryPath(),
                 homePath(QStringLiteral(".config/autostart/com.velto.tallyhelper.desktop")));
        {
            ScopedEnvironment config("XDG_CONFIG_HOME", QFile::encodeName(homePath("cfg")));
            QCOMPARE(EVLoginItem::entryPath(),
                     homePath(QStringLiteral("cfg/autostart/com.velto.tallyhelper.desktop")));
        }
        // Relative values are invalid and ignored.
        ScopedEnvironment relative("XDG_CONFIG_HOME", "cfg");
        QCOMPARE(EVLoginItem::entryPath(),
                 homePath(QStringLiteral(".config/autostart/com.velto.tallyhelper.desktop")));
    }

    void enablingWritesAnEntryThatStartsTheExecutable()
    {
        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QVERIFY(!item.isEnabled());
        QVERIFY2(item.setEnabled(true), qPrintable(item.errorString()));
        QVERIFY(item.isEnabled());
        QCOMPARE(readFile(EVLoginItem::entryPath()), "[Desktop Entry]\n"
                                                     "Type=Application\n"
                                                     "Name=Tallyvane\n"
                                                     "Exec=" +
                                                         QFile::encodeName(m_executable) +
                                                         "\n"
                                                         "Icon=com.velto.tallyvane\n"
                                                         "Terminal=false\n"
                                                         "X-GNOME-Autostart-enabled=true\n");
        QCOMPARE(QDir(QFileInfo(EVLoginItem::entryPath()).path()).entryList(QDir::Files),
                 QStringList{QStringLiteral("com.velto.tallyhelper.desktop")});
    }

    void entryStartsTheExecutableByNameWhenPathFindsTheSameFile()
    {
        const QString bin = homePath(QStringLiteral("bin"));
        QDir().mkpath(bin);
        QVERIFY(QFile::link(m_executable, bin + QStringLiteral("/tallyvane")));
        ScopedEnvironment path("PATH", QFile::encodeName(bin));

        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QCOMPARE(item.execCommand(), QStringLiteral("tallyvane"));
        QVERIFY(item.setEnabled(true));
        QCOMPARE(execLine(readFile(EVLoginItem::entryPath())), QByteArray("tallyvane"));
    }

    void entryStartsTheExecutableByPathWhenPathFindsAnotherFile()
    {
        const QString bin = homePath(QStringLiteral("bin"));
        makeExecutable(bin + QStringLiteral("/tallyvane"));
        ScopedEnvironment path("PATH", QFile::encodeName(bin));

        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QCOMPARE(item.execCommand(), m_executable);
    }

    void execQuotesAndEscapesThePath_data()
    {
        // '@' stands for the home folder. The escaping of string values doubles every backslash
        // of the argument in the file.
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("argument");   // as the Exec key means it
        QTest::addColumn<QByteArray>("written"); // as it stands in the file
        QTest::newRow("space") << "My Apps"
                               << "\"@/My Apps/tallyvane\""
                               << QByteArray("\"@/My Apps/tallyvane\"");
        QTest::newRow("dollar") << "a$b"
                                << "\"@/a\\$b/tallyvane\"" << QByteArray("\"@/a\\\\$b/tallyvane\"");
        QTest::newRow("percent") << "100%"
                                 << "@/100%%/tallyvane" << QByteArray("@/100%%/tallyvane");
        QTest::newRow("backslash")
            << "back\\slash"
            << "\"@/back\\\\slash/tallyvane\"" << QByteArray("\"@/back\\\\\\\\slash/tallyvane\"");
        QTest::newRow("double quote")
            << "say \"hi\""
            << "\"@/say \\\"hi\\\"/tallyvane\"" << QByteArray("\"@/say \\\\\"hi\\\\\"/tallyvane\"");
        QTest::newRow("backtick and quote")
            << "it's `x`"
            << "\"@/it's \\`x\\`/tallyvane\"" << QByteArray("\"@/it's \\\\`x\\\\`/tallyvane\"");
    }

    void execQuotesAndEscapesThePath()
    {
        QFETCH(QString, folder);
        QFETCH(QString, argument);
        QFETCH(QByteArray, written);
        const QString executable = makeExecutable(homePath(folder + QStringLiteral("/tallyvane")));
        const QString home = m_home->path();

        EVLoginItem item(QStringLiteral("Tallyvane"), executable);
        QCOMPARE(item.execCommand(), argument.replace(u'@', home));
        QVERIFY(item.setEnabled(true));
        QCOMPARE(execLine(readFile(EVLoginItem::entryPath())),
                 written.replace('@', QFile::encodeName(home)));
    }

    void enablingReplacesAnOldEntryByRenaming()
    {
        const QString entry = EVLoginItem::entryPath();
        QVERIFY(writeFile(entry, "[Desktop Entry]\nExec=/old/place/tallyvane\n"));
        const ino_t before = inode(entry);

        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QVERIFY(item.setEnabled(true));
        QCOMPARE(execLine(readFile(entry)), QFile::encodeName(m_executable));
        QVERIFY(inode(entry) != before);
        QCOMPARE(QDir(QFileInfo(entry).path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("com.velto.tallyhelper.desktop")});
    }

    void disablingRemovesTheEntry()
    {
        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QVERIFY(item.setEnabled(true));
        QVERIFY2(item.setEnabled(false), qPrintable(item.errorString()));
        QVERIFY(!QFileInfo::exists(EVLoginItem::entryPath()));
        QVERIFY(!item.isEnabled());
        // Already off stays off, without complaint.
        QVERIFY(item.setEnabled(false));
        QVERIFY(item.errorString().isEmpty());
    }

    void stateIsReadBackFromTheFile_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("plain entry") << QByteArray("[Desktop Entry]\nExec=tallyvane\n") << true;
        QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nExec=tallyvane\nHidden=true\n")
                                << false;
        QTest::newRow("switched off in GNOME")
            << QByteArray("[Desktop Entry]\nExec=tallyvane\nX-GNOME-Autostart-enabled=false\n")
            << false;
        QTest::newRow("hidden=false") << QByteArray("[Desktop Entry]\nHidden=false\n") << true;
        QTest::newRow("hidden in another group")
            << QByteArray("[Desktop Entry]\nExec=tallyvane\n[Desktop Action x]\nHidden=true\n")
            << true;
        QTest::newRow("empty file") << QByteArray() << false;
        QTest::newRow("not an entry") << QByteArray("hello\n") << false;
        QTest::newRow("binary") << QByteArray("\x00\xff[Desktop", 10) << false;
    }

    void stateIsReadBackFromTheFile()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, enabled);
        QVERIFY(writeFile(EVLoginItem::entryPath(), contents));
        QCOMPARE(EVLoginItem(QStringLiteral("Tallyvane"), m_executable).isEnabled(), enabled);
    }

    void failsWhenTheFolderCannotBeMade()
    {
        const QString autostart = QFileInfo(EVLoginItem::entryPath()).path();
        QVERIFY(writeFile(autostart, "a file where the folder belongs"));

        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QVERIFY(!item.setEnabled(true));
        QVERIFY(!item.errorString().isEmpty());
        QVERIFY(!item.isEnabled());
        QCOMPARE(readFile(autostart), QByteArray("a file where the folder belongs"));
    }

    void failureInAnUnwritableFolderChangesNothing()
    {
        const QString entry = EVLoginItem::entryPath();
        const QByteArray old = "[Desktop Entry]\nExec=/old/place/tallyvane\n";
        QVERIFY(writeFile(entry, old));
        ReadOnlyFolder readOnly(QFileInfo(entry).path());
        if (!readOnly.isMade())
            QSKIP("this file system cannot make a folder unwritable for root");

        EVLoginItem item(QStringLiteral("Tallyvane"), m_executable);
        QVERIFY(!item.setEnabled(true));
        QVERIFY(!item.errorString().isEmpty());
        QCOMPARE(readFile(entry), old);
        QVERIFY(!item.setEnabled(false));
        QVERIFY(!item.errorString().isEmpty());
        QCOMPARE(readFile(entry), old);
        QVERIFY(item.isEnabled());
        QCOMPARE(QDir(QFileInfo(entry).path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("com.velto.tallyhelper.desktop")});
    }
};

TALLYVANE_TEST_MAIN(TestEVLoginItem)
#include "tst_evloginitem.moc"
