#include "server/ServerWorld.h"

#include <sys/stat.h>

namespace corvane::server::testing {
namespace {

namespace fs = std::filesystem;

class PublishedFolderTest : public ServerWorld {
protected:
    PublishedFolderTest()
    {
        publish_.write("index.html", "<p>start</p>");
        publish_.write("a/page.html", "<a href=\"http://127.0.0.1:3002/a/\">x</a>");
        publish_.write("a/list.JSON", "[\"http://127.0.0.1:3002/\",\"http://127.0.0.1:30021/\"]");
        publish_.write("a/plain.txt", "http://127.0.0.1:3002/");
        publish_.write("sub/index.html", "sub");
        publish_.write("bare/file.css", "p{}");
        publish_.write(".hidden/file.txt", "hidden");
        publish_.write("a b/ü.txt", "blank");
        data_.write("secret.txt", "secret");
        fs::create_directory_symlink(data_.path(), publish_.path() / "link");
        fs::create_symlink(data_.path() / "secret.txt", publish_.path() / "link.txt");
        fs::create_symlink("plain.txt", publish_.path() / "a/inner.txt");
        mkfifo((publish_.path() / "pipe.txt").c_str(), 0600);
    }

    // Straight to the folder: a client would tidy such paths up before it sends them.
    HttpAnswer ask(const std::string& path, const std::string& method = "GET") const
    {
        HttpRequest request;
        request.method = method;
        request.path = path;
        return PublishedFolder(publish_.path()).answer(request);
    }
};

TEST_F(PublishedFolderTest, NothingOutsideTheFolderCanBeReached)
{
    const std::string name = data_.path().filename().string();
    const auto outside = data_.path().string() + "/secret.txt";
    const std::vector<std::string> paths{"/../" + name + "/secret.txt",
                                         "/%2e%2e/" + name + "/secret.txt",
                                         "/.%2e/" + name + "/secret.txt",
                                         "/a/../../" + name + "/secret.txt",
                                         "/a%2f..%2f..%2f" + name + "/secret.txt",
                                         "/" + outside,
                                         "/" + outside.substr(1),
                                         "/%2f" + outside,
                                         "/link/secret.txt",
                                         "/link.txt",
                                         "/a/inner.txt",
                                         "/.hidden/file.txt",
                                         "/%2ehidden/file.txt",
                                         "/a/page.html%00.txt",
                                         "/a//page.html",
                                         "/./a/page.html",
                                         "/a/page.html/",
                                         "/a/%",
                                         "/a/%zz",
                                         "/%ff",
                                         "/pipe.txt",
                                         "/missing",
                                         "/a",
                                         "/a/",
                                         "",
                                         "*",
                                         "/" + std::string(5000, 'x')};
    for (const auto& path : paths)
        EXPECT_EQ(ask(path).status, 404U) << path.substr(0, 100);
}

TEST_F(PublishedFolderTest, FilesComeWithTheirTypeAndHaveToBeAskedForAgain)
{
    const std::map<std::string, std::pair<std::string, std::string>> files{
        {"/", {"text/html; charset=utf-8", "<p>start</p>"}},
        {"/sub/", {"text/html; charset=utf-8", "sub"}},
        {"/bare/file.css?v=1", {"text/css; charset=utf-8", "p{}"}},
        {"/a%20b/%C3%BC.txt", {"text/plain; charset=utf-8", "blank"}}};
    for (const auto& [path, expected] : files) {
        const auto reply = get(path);
        EXPECT_EQ(reply.status, 200U) << path;
        EXPECT_EQ(reply.headers.at("content-type"), expected.first) << path;
        EXPECT_EQ(reply.body, expected.second) << path;
        EXPECT_EQ(reply.headers.at("cache-control"), "no-cache") << path;
        EXPECT_EQ(reply.headers.at("x-content-type-options"), "nosniff") << path;
        EXPECT_EQ(reply.headers.at("referrer-policy"), "no-referrer") << path;
    }
}

TEST_F(PublishedFolderTest, AFolderIsRedirectedToItsSlashOnlyWhenThereIsAnIndex)
{
    const auto reply = get("/sub?x=1");
    EXPECT_EQ(reply.status, 308U);
    EXPECT_EQ(reply.headers.at("location"), "/sub/?x=1");
    EXPECT_EQ(get("/bare").status, 404U);
    EXPECT_EQ(get("/bare/").status, 404U);
}

TEST_F(PublishedFolderTest, SampleAddressesBecomeTheServersOwn)
{
    EXPECT_EQ(get("/a/page.html").body, "<a href=\"" + origin() + "/a/\">x</a>");
    EXPECT_EQ(get("/a/list.JSON").body, "[\"" + origin() + "/\",\"http://127.0.0.1:30021/\"]");
    EXPECT_EQ(get("/a/plain.txt").body, "http://127.0.0.1:3002/");
}

TEST_F(PublishedFolderTest, AnUnchangedFileIsNotSentAgain)
{
    const auto first = get("/bare/file.css");
    const auto tag = first.headers.at("etag");
    const auto date = first.headers.at("last-modified");
    struct Case {
        Headers headers;
        unsigned status;
    };
    const std::vector<Case> cases{{{{"If-None-Match", tag}}, 304},
                                  {{{"If-None-Match", "\"x\", W/" + tag}}, 304},
                                  {{{"If-None-Match", "*"}}, 304},
                                  {{{"If-None-Match", "\"x\""}}, 200},
                                  {{{"If-None-Match", "\"x\""}, {"If-Modified-Since", date}}, 200},
                                  {{{"If-Modified-Since", date}}, 304},
                                  {{{"If-Modified-Since", "Mon, 01 Jan 2001 00:00:00 GMT"}}, 200},
                                  {{{"If-Modified-Since", "soon"}}, 200}};
    for (const auto& one : cases) {
        const auto reply = get("/bare/file.css", one.headers);
        EXPECT_EQ(reply.status, one.status) << one.headers.begin()->second;
        EXPECT_EQ(reply.body.empty(), one.status == 304) << one.headers.begin()->second;
        EXPECT_EQ(reply.headers.at("etag"), tag);
    }
    publish_.write("bare/file.css", "p{color:red}");
    EXPECT_EQ(get("/bare/file.css", {{"If-None-Match", tag}}).body, "p{color:red}");
}

TEST_F(PublishedFolderTest, ALongFileArrivesWholeAndHeadSendsOnlyItsLength)
{
    std::string image(std::size_t{3} * 1024 * 1024 + 17, '\0');
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<char>(i * 31 % 251);
    publish_.write("image.dmg", image);
    EXPECT_TRUE(get("/image.dmg").body == image);

    const auto head = send("HEAD", "/image.dmg");
    EXPECT_EQ(head.status, 200U);
    EXPECT_EQ(head.headers.at("content-length"), std::to_string(image.size()));
    EXPECT_EQ(head.body, "");
    EXPECT_EQ(send("HEAD", "/").headers.at("content-length"), "12");

    publish_.write("empty.txt", "");
    EXPECT_EQ(get("/empty.txt").headers.at("content-length"), "0");
}

TEST_F(PublishedFolderTest, OnlyReadingIsAllowed)
{
    for (const auto* method : {"POST", "PUT", "DELETE"}) {
        EXPECT_EQ(ask("/bare/file.css", method).status, 405U) << method;
        EXPECT_EQ(ask("/missing", method).status, 404U) << method;
    }
}

} // namespace
} // namespace corvane::server::testing
