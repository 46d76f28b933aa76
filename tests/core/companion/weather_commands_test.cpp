#include "companion/weather_commands.h"

#include "companion_fixture.h"

namespace sky::companion {
namespace {

using testing::Companion;

const QString kServer = u"http://127.0.0.1:9/wx"_s;

TEST(StationFileAddress, PutsThePathsUnderTheServer) {
    EXPECT_EQ(StationFileAddress(u"https://tgftp.nws.noaa.gov/"_s, u"metar"_s, u"EDDF"_s),
              u"https://tgftp.nws.noaa.gov/data/observations/metar/stations/EDDF.TXT");
    EXPECT_EQ(StationFileAddress(kServer, u"taf"_s, u"EDDF"_s),
              kServer + u"/data/forecasts/taf/stations/EDDF.TXT"_s);
    EXPECT_EQ(StationFileAddress(kServer, u"shorttaf"_s, u"EDDF"_s),
              kServer + u"/data/forecasts/shorttaf/stations/EDDF.TXT"_s);
}

TEST(ReportFromStationFile, CutsTheDateLineAndAcceptsOnlyAReportOfTheStation) {
    EXPECT_EQ(ReportFromStationFile(u"2026/11/21 14:20\nEDDF 211420Z 24010KT 9999 FEW030 08/03 Q1012\n"_s,
                                    u"EDDF"_s),
              u"EDDF 211420Z 24010KT 9999 FEW030 08/03 Q1012");
    // A forecast: continuation lines are indented with runs of blanks, twelve become two.
    EXPECT_EQ(ReportFromStationFile(
                  u"2026/11/21 11:00\nTAF AMD EDDF 211100Z\n            TEMPO 2114/2118\n"_s, u"EDDF"_s),
              u"TAF AMD EDDF 211100Z\r\n  TEMPO 2114/2118");
    EXPECT_EQ(ReportFromStationFile(u""_s, u"EDDF"_s), u"");
    EXPECT_EQ(ReportFromStationFile(u"short"_s, u"EDDF"_s), u"");
    EXPECT_EQ(ReportFromStationFile(u"2026/11/21 14:20\nKJFK 211420Z\n"_s, u"EDDF"_s), u"");
    EXPECT_EQ(ReportFromStationFile(u"<html>Not Found</html>"_s, u"EDDF"_s), u"");
}

TEST_F(Companion, MetarFetchesKnownAirportsOnlyAndSaysWhenThereIsNoReport) {
    m_http.Answers[kServer + u"/data/observations/metar/stations/EDDF.TXT"_s] =
        "2026/11/21 14:20\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n";
    EXPECT_EQ(Run(u"METAR EDDF"_s),
              (QStringList{u"> metar EDDF"_s, u"EDDF 211420Z 24010KT CAVOK 08/03 Q1012\r\n"_s}));
    EXPECT_TRUE(m_downloads.DownloadIdle);
    EXPECT_EQ(Run(u"taf zzzz"_s), (QStringList{u"> taf ZZZZ"_s, u"Unrecognized ICAO code\r\n"_s}));
    EXPECT_EQ(m_http.Requests.size(), 1); // no fetch for an unknown airport
    EXPECT_EQ(Run(u"taf eddf"_s).value(1), u"No TAF for EDDF\r\n");
    EXPECT_EQ(Run(u"staf kjfk"_s).value(1), u"No SHORTTAF for KJFK\r\n");
    m_http.Answers[kServer + u"/data/observations/metar/stations/EGLL.TXT"_s] = QByteArray(10 << 20, '\x01');
    EXPECT_EQ(Run(u"wx egll"_s).value(1), u"No METAR for EGLL\r\n");
}

} // namespace
} // namespace sky::companion
