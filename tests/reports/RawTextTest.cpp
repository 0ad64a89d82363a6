// SPDX-License-Identifier: MIT
#include "reports/RawText.h"
#include "platform/values/Units.h"
#include "reports/Category.h"

#include <gtest/gtest.h>

namespace reports {
namespace {

TEST(RawText, FlagsOfTheWholeReport) {
    const struct {
        const char* raw;
        Revision revision;
        bool isNil;
        bool isCancelled;
    } cases[] = {
        {"METAR COR KJFK 211251Z AUTO 22010KT", Revision::corrected, false, false},
        {"KJFK 211251Z AUTO NIL=", Revision::none, true, false},
        {"TAF VTBD 281000Z 2812/2912 CNL=", Revision::none, false, true},
        {"TAF CNL 281000Z 2812/2912 CANCELLED", Revision::none, false, true},
        {"TAF CNL 281000Z 2812/2912 9999", Revision::none, false, false},
        {"TAF AMD TAF AMD CYRB 281000Z 2812/2912", Revision::amended, false, false},
        {"TAF COR CYOW 281000Z 2812/2912 AMD", Revision::corrected, false, false},
        {"TAF CYOW 281000Z 2812/2912 18010KT RMK FCST CNL NIL COR", Revision::none, false, false},
    };
    for (const auto& [raw, revision, isNil, isCancelled] : cases) {
        SCOPED_TRACE(raw);
        const RawFlags flags = rawFlags(raw);
        EXPECT_EQ(flags.revision, revision);
        EXPECT_EQ(flags.isNil, isNil);
        EXPECT_EQ(flags.isCancelled, isCancelled);
    }
}

TEST(RawText, SkyAndVisibilityOfAMetarAtItsOwnTime) {
    const std::pair<const char*, const char*> cases[] = {
        {"METAR ESUD 180750Z AUTO 22008KT 9000 OVC004///", "LIFR"},
        {"METAR EKAH 180750Z AUTO 22008KT 140V280 9999NDV BKN052/// 07/05 Q1000", "VFR"},
        {"METAR EKRN 180750Z AUTO 25012KT 6000NDV OVC005/// 07/06 Q1004", "IFR"},
        {"METAR LKTB 180730Z VRB02KT CAVOK 03/01 Q1020", "VFR"},
        {"METAR YBNA 180700Z AUTO 01012KT 9999 // NCD 27/22 Q1005", "VFR"},
        {"METAR LDOS 180730Z 22003MPS 0100 FG NSC 01/01 Q1018", "LIFR"},
        {"METAR KAAA 180730Z 22003KT 10SM SKC 01/01", "VFR"},
        {"METAR KAAA 180730Z 22003KT 10SM VV002 01/01", "LIFR"},
        // Trend and remarks do not tell of the present.
        {"METAR NZWN 180730Z 22003KT 9999 OVC026/// 12/10 Q1001 TEMPO BKN008", "MVFR"},
        {"METAR KAAA 180730Z 22003KT 10SM NSC BECMG OVC001", "VFR"},
        {"METAR KAAA 180730Z 22003KT 10SM NSC NOSIG OVC001", "VFR"},
        {"METAR KAAA 180730Z 22003KT 10SM CLR RMK VV001", "VFR"},
        // Forms that leave doubt.
        {"METAR RJCC 180730Z 22003KT 9999 FEW030 BKN///", ""},
        {"METAR KAAA 180730Z 22003KT 10SM FEW030 VV/// 01/01", ""},
        {"METAR FYGB 180700Z AUTO 01003KT //// // ////// 25/11 Q1020", ""},
        {"METAR KNMT 1218 DH0700/PPH M", ""},
        {"METAR KAAA 180730Z 22003KT 1 1/2SM CLR", ""},
        {"METAR KAAA 180730Z 22003KT R28L///// 9999 CLR", ""},
        {"METAR KAAA 180730Z 22003KT 10SM", ""},
        {"METAR KAAA 180730Z /////KT 9999 FEW017///", "VFR"},
        {"", ""},
    };
    for (const auto& [raw, category] : cases) {
        EXPECT_EQ(nameOf(categoryOf(rawConditions(raw))), category) << raw;
    }
    EXPECT_EQ(rawConditions("22003KT 9999 FEW029TCU OVC001XX SCT030CB BKN///").layers,
              (std::vector<Layer>{{Cover::few, 2900, "TCU"},
                                  {Cover::scattered, 3000, "CB"},
                                  {Cover::broken, {}, ""}}));
    EXPECT_EQ(rawConditions("22003KT 0100 VV002").verticalVisibility, 200);
    for (const auto& [raw, metres, isOrMore] : {std::tuple("CAVOK", 10'000, true),
                                                {"22003KT 9999", 10'000, true},
                                                {"22003KT 9000NDV", 9000, false},
                                                {"22003KT 0800", 800, false}}) {
        EXPECT_EQ(rawConditions(raw).visibility,
                  (Visibility{metres / platform::metresPerMile, isOrMore}))
            << raw;
    }
    EXPECT_EQ(rawConditions("22003KT 9SM").visibility, (Visibility{9, false}));
    EXPECT_EQ(rawWindVariation("KAAA 22003KT 18XV240 180VX40 170V230"), std::pair(170, 230));
    EXPECT_FALSE(rawWindVariation("TEMPO 180V240") || rawWindVariation("RMK 180V240"));
}

TEST(RawText, TafsBreakBeforeTheirChanges) {
    const struct {
        std::string raw;
        std::vector<std::string> lines;
    } cases[] = {
        {"", {}},
        {"TAF FMMI 082300Z 0900/1006 09008KT FM091200 10010KT=",
         {"TAF FMMI 082300Z 0900/1006 09008KT", "FM091200 10010KT="}},
        {"TAF KAAA 081720Z 0818/0918 9999 BKN020 PROB30\n TEMPO 0908/0916 3000 TSRA",
         {"TAF KAAA 081720Z 0818/0918 9999 BKN020", "PROB30 TEMPO 0908/0916 3000 TSRA"}},
        {"TAF XXXX 261100Z 2612/2718 9999 PROB40 2612/2618 2000 2618/2706 0300 FZFG",
         {"TAF XXXX 261100Z 2612/2718 9999", "PROB40 2612/2618 2000", "2618/2706 0300 FZFG"}},
        {"TAF YMML 271100Z 2712/2818 9999 TEMPO 2712/2715 3000 INTER 2712/2802 1000 BECMG "
         "2801/2803 2308/2312 9999/8000",
         {"TAF YMML 271100Z 2712/2818 9999", "TEMPO 2712/2715 3000", "INTER 2712/2802 1000",
          "BECMG 2801/2803", "2308/2312 9999/8000"}},
        {"TAF KAAA 081720Z 0818/0918 CAVOK BECMG 3121/3124 17017KT",
         {"TAF KAAA 081720Z 0818/0918 CAVOK", "BECMG 3121/3124 17017KT"}},
        {"PART 1 OF 3 TAF SBGL 081720Z 0818/0918 9999 TX20/1619Z TN11/1612Z RMK FM TEMPO BECMG",
         {"PART 1 OF 3 TAF SBGL 081720Z 0818/0918 9999 TX20/1619Z TN11/1612Z",
          "RMK FM TEMPO BECMG"}},
        {"TAF TXFL 150500Z", {"TAF TXFL 150500Z"}},
        {"FM1200 9999 FM12345 PROB3X", {"FM1200 9999 FM12345 PROB3X"}},
        {"TAF XXXX 3006/0112 9999 0100/0112 0018/0020 3206/3212 3106/3125",
         {"TAF XXXX 3006/0112 9999", "0100/0112 0018/0020 3206/3212 3106/3125"}},
        {"TAF KNBC 1215/1315 VRB03KT 9999 TEMPO1218/1220 3000",
         {"TAF KNBC 1215/1315 VRB03KT 9999", "TEMPO1218/1220 3000"}},
    };
    for (const auto& [raw, lines] : cases) {
        EXPECT_EQ(brokenTaf(raw), lines) << raw;
        EXPECT_EQ(partsOfTaf(raw), lines.size() - (raw.find("RMK") == raw.npos ? 0 : 1)) << raw;
    }
}

} // namespace
} // namespace reports
