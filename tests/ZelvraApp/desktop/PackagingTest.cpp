// SPDX-License-Identifier: GPL-3.0-or-later

#include <QImage>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

const QString packaging = QStringLiteral(ZELVRA_PACKAGING);
const QString built = QStringLiteral(ZELVRA_PACKAGING_BUILT);

/// The program's output if it fails; empty if it succeeds.
QByteArray errorsOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished();
    return process.exitCode() == 0 && process.error() != QProcess::FailedToStart
               ? QByteArray()
               : process.readAll() + "failed";
}

/// Errors and warnings of the check of AppStream data, one a line. Newer versions warn that the program has
/// no home page.
QStringList faultsOfMetainfo(const QString& file) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start("appstreamcli", {"validate", "--no-net", file});
    EXPECT_TRUE(process.waitForFinished());
    return QString::fromUtf8(process.readAll())
        .split('\n')
        .filter(QRegularExpression("^[EW]: (?!.*url-homepage-missing)"));
}

TEST(Packaging, DescribesTheProgramForDesktops) {
    EXPECT_EQ(errorsOf("desktop-file-validate", {packaging + "/desktop/com.corvath.Zelvra.desktop"}), "");
    EXPECT_EQ(faultsOfMetainfo(built + "/com.corvath.Zelvra.metainfo.xml"), QStringList());
    QProcess groff;
    groff.start("groff", {"-man", "-Tutf8", "-P-cbou", "-ww", packaging + "/man/zelvra.1"});
    groff.waitForFinished();
    EXPECT_EQ(groff.readAllStandardError(), "");
}

TEST(Packaging, DrawsTheIconInEverySize) {
    for (const int size : {16, 48, 512}) {
        const QImage icon(built + QStringLiteral("/icons/%1/com.corvath.Zelvra.png").arg(size));
        EXPECT_EQ(icon.size(), QSize(size, size));
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
        EXPECT_GT(icon.pixelColor(size / 2, size / 4).alpha(), 200);
    }
}

} // namespace
} // namespace zelvra::test
