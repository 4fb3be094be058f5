// SPDX-License-Identifier: GPL-3.0-or-later
// The illustrated report: what is chosen and kept, what its parts tell, that it leaves the session
// as it was.
#include "post/bookhtml.h"

#include <algorithm>
#include <filesystem>

#include "files/kalfile.h"
#include "tests/post/plotroom.h"

namespace {

struct bookroom : plotroom {
    bookroom() {
        bookpng = [this](double width, double height, const bookdraw& draw) {
            recordpage page;
            page.framewidth = width;
            page.frameheight = height;
            draw(page);
            pictures.push_back(page.operations);
            return std::string("png");
        };
        write(".LES", {});
        writefile(file("job.LES"), "END\r\n");
    }
    ~bookroom() { bookpng = nullptr; }
    void only(const std::vector<std::string>& keys) const {
        bookchoice book = thebook();
        for (const bookpart& p : bookparts())
            wantpart(book, p.key, std::ranges::find(keys, p.key) != keys.end());
        storebook(book);
    }
    std::string html() const {
        writehtmlbook(file("report.html"));
        return contentof(file("report.html"));
    }
    std::vector<std::vector<std::string>> pictures;
};

long count(const std::string& text, const std::string& part) {
    long found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++found;
    return found;
}

}  // namespace

TEST(Book, KeepsWhatIsChosenWithTheModel) {
    const bookroom room;
    bookchoice book = thebook();
    EXPECT_TRUE(ispartwanted(book, "groups"));
    EXPECT_FALSE(ispartwanted(book, "nodes"));
    EXPECT_FALSE(wantpart(book, "chapter", true));
    EXPECT_TRUE(wantpart(book, "nodes", true));
    EXPECT_TRUE(wantpart(book, "groups", false));
    book.title = "Deck, \"B\"";
    showcontour();
    viewhor(1) = 0.25f;
    book.views.push_back(sceneforbook());
    storebook(book);
    const bookchoice now = thebook();
    EXPECT_EQ(now.title, book.title);
    EXPECT_TRUE(ispartwanted(now, "nodes"));
    EXPECT_FALSE(ispartwanted(now, "groups"));
    ASSERT_EQ(now.views.size(), 1u);
    EXPECT_EQ(now.views[0].horizontal, 0.25);
    EXPECT_TRUE(now.views[0].contour);
    EXPECT_EQ(now.views[0].component, 1);
    EXPECT_EQ(booktitle(bookchoice()), "job");
    ASSERT_TRUE(stepback());
    EXPECT_EQ(thebook().title, "");
    for (const char* rows : {"\"view\",\"x\",1", "\"chapter\",2", "\"view\",\"x\",1,2,0,0,0,1"}) {
        putkalsection("report", rows);
        EXPECT_THROW(thebook(), runtimeerror) << rows;
    }
}

TEST(Book, TellsExtremesPicturesAndLeavesTheDisplay) {
    bookroom room;
    groupname(1) = "Skin <1>";
    showelementstress();
    stresscomp = 2;
    viewhor(1) = 0.5f;
    const float scale = viewscale(1);
    room.only({"modelpictures", "displacements", "stresses", "contours"});
    bookchoice book = thebook();
    scene view = scenenow();
    view.caption = "A view";
    book.views.push_back(view);
    storebook(book);
    const std::string html = room.html();
    // Node 2 moves by 3, 4 in the first combination, by -2 times as much in the second.
    EXPECT_NE(html.find("<td>Wind</td><td class=\"n\">5 at 2</td><td class=\"n\">3 at 2</td>"),
              html.npos);
    EXPECT_NE(html.find("10 at 2</td><td class=\"n\">-6 at 2"), html.npos);
    EXPECT_NE(html.find("<td>Skin &lt;1&gt;</td><td>Wind</td><td class=\"n\">40 at 1"), html.npos);
    EXPECT_NE(html.find("-70 at 2"), html.npos) << "the second group, second combination";
    EXPECT_EQ(count(html, "<img "), 1 + 4 + 1) << "flat: one view; two contours, two of lines";
    EXPECT_EQ(count(html, "base64,cG5n\""), 6);
    EXPECT_EQ(room.pictures.size(), 6u);
    EXPECT_EQ(count(html, "<h3 id="), 5);
    const auto has = [&](std::size_t i, const std::string& text) {
        return std::ranges::any_of(room.pictures[i], [&](const std::string& o) {
            return o.starts_with("text ") && o.ends_with(text);
        });
    };
    EXPECT_FALSE(has(0, "Wind")) << "the model alone";
    EXPECT_TRUE(has(1, "Wind")) << "a contour has its legend";
    EXPECT_TRUE(menupostItem(elementstress).checked);
    EXPECT_FALSE(menupostItem(contourplot).checked);
    EXPECT_EQ(stresscomp, 2);
    EXPECT_EQ(curlcomb, 1);
    EXPECT_EQ(viewhor(1), 0.5f);
    EXPECT_EQ(viewscale(1), scale);
}

TEST(Book, TellsBalanceInRedAndWhatIsMissing) {
    bookroom room;
    room.only({"balance", "modes", "reactions"});
    for (const double residual : {1e-7, 1e-5}) {
        writefile(room.file("job.sum"),
                  "\"static\",\"\",1\r\n\"modes\",\"\",0\r\n\"case\",1,\"LC 1\"\r\n"
                  "\"applied\",0,0,-9,0,0,0\r\n\"residual\"," +
                      std::to_string(residual) + "\r\n");
        const std::string html = room.html();
        EXPECT_NE(html.find("Load case 1: LC 1"), html.npos);
        EXPECT_EQ(count(html, "<tr class=\"warning\"><td>Residual"), residual > 1e-6 ? 1 : 0);
        EXPECT_NE(html.find("There are no such results."), html.npos) << "no forces";
        EXPECT_NE(html.find("No modes of vibration"), html.npos);
    }
    std::filesystem::remove(room.file("job.rvp"));
    EXPECT_EQ(count(room.html(), "No analysis has been performed."), 2);
    const std::string before = contentof(room.file("report.html"));
    room.platform.cancelled = true;
    EXPECT_THROW(room.html(), runtimeerror);
    EXPECT_EQ(contentof(room.file("report.html")), before) << "the former one stands";
}

// As many rows as nodes, whatever their number, and each row once.
TEST(Book, TablesHoldEveryRow) {
    bookroom room;
    room.only({"nodes", "elements", "alldisplacements", "allstresses"});
    const std::string html = room.html();
    EXPECT_EQ(count(html, "<tr><td class=\"n\">"), 6 + 3 + 2 * 6 + 2 * 8);
}
