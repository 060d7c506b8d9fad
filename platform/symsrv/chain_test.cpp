// The grammar of symbol-server elements.

#include "symsrv/chain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> shown(const Chain& chain) {
  std::vector<std::string> names;
  for (const StoreName& store : chain.stores)
    names.push_back(store.url ? store.url->below({}) : store.directory);
  return names;
}

struct ElementRow {
  const char* name;
  const char* element;
  std::vector<std::string> stores;
};

class GoodElement : public ::testing::TestWithParam<ElementRow> {};

TEST_P(GoodElement, NamesItsStores) {
  const ParsedElement parsed = parseElement(GetParam().element, "DEFAULT");
  ASSERT_TRUE(parsed.chain) << parsed.refusal;
  EXPECT_EQ(shown(*parsed.chain), GetParam().stores);
  EXPECT_FALSE(parsed.chain->isCache);
}

const ElementRow kGood[] = {
    {"Bare", "srv*", {"DEFAULT"}},
    {"Directory", R"(srv*C:\c)", {R"(C:\c)"}},
    {"DirectoryAndServer", R"(srv*C:\c*https://h/p)", {R"(C:\c)", "https://h/p"}},
    {"DefaultAndServer", "srv**https://h/p", {"DEFAULT", "https://h/p"}},
    {"Server", "srv*https://h/p", {"https://h/p"}},
    {"UpperCase", R"(SRV*c*\\srv\s*https://h/p)", {"c", R"(\\srv\s)", "https://h/p"}},
    {"StarAtTheEnd", "srv*c*m*https://h/p*", {"c", "m", "https://h/p", "DEFAULT"}},
    {"BuiltInLibrary", "symsrv*symsrv.dll*c*https://h/p", {"c", "https://h/p"}},
    {"BuiltInInUpperCase", "SymSrv*SYMSRV.DLL*c", {"c"}},
    {"BuiltInAlone", "symsrv*symsrv.dll", {"DEFAULT"}},
    {"Blanks", " srv* c * https://h/p ", {"c", "https://h/p"}},
    {"TrailingSlash", "srv*https://h/p//", {"https://h/p"}},
    {"SemicolonAfterAServer", "srv*c*https://h/p;", {"c", "https://h/p"}},
    {"SemicolonAfterADirectory", "srv*c;", {"c"}},
    {"SemicolonAfterAStar", "srv*;", {"DEFAULT"}},
    {"SemicolonsAndBlanks", "srv*c ; ;; ", {"c"}},
    {"SemicolonWithin", "srv*c;d", {"c;d"}},
    {"NoPath", "srv*https://h", {"https://h"}},
    {"Credentials", "srv*https://u:p@h/p", {"https://u:p@h/p"}},
    {"Query", "srv*https://h/p?sas=1", {"https://h/p?sas=1"}},
    {"Ipv6", "srv*https://[::1]:8/p", {"https://[::1]:8/p"}},
    {"TenStores", "srv*1*2*3*4*5*6*7*8*9*10", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}},
};
INSTANTIATE_TEST_SUITE_P(Table, GoodElement, ::testing::ValuesIn(kGood), [](const auto& row) {
  return std::string(row.param.name);
});

struct RefusalRow {
  const char* name;
  const char* element;
  const char* reason;
};

class BadElement : public ::testing::TestWithParam<RefusalRow> {};

TEST_P(BadElement, IsRefusedWithAReason) {
  const ParsedElement parsed = parseElement(GetParam().element, "DEFAULT");
  EXPECT_FALSE(parsed.chain);
  EXPECT_THAT(parsed.refusal, HasSubstr(GetParam().reason));
}

const RefusalRow kBad[] = {
    {"OtherLibrary", "symsrv*other.dll*x*y", "library \"other.dll\""},
    {"PathOfALibrary", R"(symsrv*c:\symsrv.dll*x)", R"(library "c:\symsrv.dll")"},
    {"NoLibrary", "symsrv*", "library \"\""},
    {"ElevenStores", "srv*1*2*3*4*5*6*7*8*9*10*11", "more than 10"},
    {"FileScheme", "srv*c*file:///etc", "address \"file://..."},
    {"FtpScheme", "srv*ftp://u:secret@h/p", "address \"ftp://..."},
    {"NoHost", "srv*https:///p", "address"},
    {"PortOnly", "srv*https://:80/p", "address"},
    {"BlankInAddress", "srv*https://h /p", "address"},
    {"Directory", "c:\\sym", "no symbol server"},
    {"Empty", "", "no symbol server"},
    {"SemicolonAlone", ";", "no symbol server \"\""},
    {"OtherKind", "ftp*x", "kind of symbol server \"ftp\""},
    {"CacheOfTwo", "cache*a*b", "one directory"},
    {"CacheOnAServer", "cache*https://h", "one directory"},
};
INSTANTIATE_TEST_SUITE_P(Table, BadElement, ::testing::ValuesIn(kBad), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(ChainList, CacheStandsBeforeLaterElementsUntilTheNextOne) {
  ChainList list;
  for (const char* element : {"srv*a", "cache*c", "srv*b*https://h/p", "cache*", "srv*d"})
    EXPECT_EQ(list.add(element, "DEFAULT"), "");
  ASSERT_EQ(list.chains().size(), 5u);
  EXPECT_THAT(shown(list.chains()[0]), ElementsAre("a"));
  EXPECT_THAT(shown(list.chains()[1]), ElementsAre("c"));
  EXPECT_TRUE(list.chains()[1].isCache);
  EXPECT_THAT(shown(list.chains()[2]), ElementsAre("c", "b", "https://h/p"));
  EXPECT_THAT(shown(list.chains()[4]), ElementsAre("DEFAULT", "d"));
}

TEST(ChainList, ServersAloneHaveTheDefaultStoreBeforeThem) {
  ChainList list;
  list.add("srv*https://h/p", "DEFAULT");
  list.add("srv*https://h/p*a", "DEFAULT");
  list.add("srv*https://h/p", "");
  ASSERT_EQ(list.chains().size(), 3u);
  EXPECT_THAT(shown(list.chains()[0]), ElementsAre("DEFAULT", "https://h/p"));
  EXPECT_THAT(shown(list.chains()[1]), ElementsAre("DEFAULT", "https://h/p", "a"));
  EXPECT_THAT(shown(list.chains()[2]), ElementsAre("https://h/p"));
}

TEST(ChainList, ForgetsTheCacheToo) {
  ChainList list;
  list.add("cache*c", "DEFAULT");
  list.clear();
  list.add("srv*a", "DEFAULT");
  ASSERT_EQ(list.chains().size(), 1u);
  EXPECT_THAT(shown(list.chains()[0]), ElementsAre("a"));
}

TEST(ChainList, KeepsNothingOfARefusedElement) {
  ChainList list;
  EXPECT_NE(list.add("symsrv*other.dll*x", "DEFAULT"), "");
  EXPECT_TRUE(list.chains().empty());
}

TEST(ChainList, WithoutADefaultStoreNoneStandsForIt) {
  ChainList list;
  for (const char* element : {"srv*", "srv**https://h/p", "symsrv*symsrv.dll", "cache*"})
    EXPECT_THAT(list.add(element, ""), HasSubstr("no default store")) << element;
  EXPECT_EQ(list.add("srv*https://h/p", ""), "");
}

TEST(Url, EscapesComponentsAndKeepsTheQueryLast) {
  const Url url = parseUrl("https://u:p@h/p/?sas=1").value();
  EXPECT_EQ(url.below({"a b#%+&.pdb", "x", "\xC3\xA9"}),
            "https://u:p@h/p/a%20b%23%25%2B%26.pdb/x/%C3%A9?sas=1");
  EXPECT_EQ(url.shownBelow({"a"}), "https://h/p/a");
}

TEST(Url, ShowsNoSecrets) {
  EXPECT_EQ(shownUrl("https://u:secret@h/p?token=secret"), "https://h/p");
  EXPECT_EQ(shownUrl("https://h/p#secret"), "https://h/p");
  EXPECT_EQ(shownUrl("ftp://u:secret@h"), "ftp://...");
}

TEST(Url, OfAFileKeepsItsEnd) {
  EXPECT_EQ(parseAddress("https://h/a/?q")->below({}), "https://h/a/?q");
  EXPECT_EQ(parseAddress("https://h//")->below({}), "https://h//");
  EXPECT_EQ(parseAddress("https://h?q")->below({}), "https://h/?q");
  EXPECT_EQ(parseUrl("https://h//")->below({"a"}), "https://h/a");
}

TEST(Url, RedirectsMayBeRelative) {
  const Url from = parseAddress("https://h:8/a/b?q").value();
  for (const auto& [location, expected] : {std::pair("http://x/y", "http://x/y"),
                                           std::pair("//x/y", "https://x/y"),
                                           std::pair("/y?z", "https://h:8/y?z"),
                                           std::pair("y", "https://h:8/a/y"),
                                           std::pair("?z", "https://h:8/a/b?z"),
                                           std::pair("file:/etc/x", "file:/etc/x"),
                                           std::pair("y/x:z", "https://h:8/a/y/x:z"),
                                           std::pair("../y", "https://h:8/y"),
                                           std::pair("./", "https://h:8/a/"),
                                           std::pair("..", "https://h:8/"),
                                           std::pair("../../..", "https://h:8/"),
                                           std::pair("/..//y/.", "https://h:8//y/"),
                                           std::pair("", "")})
    EXPECT_EQ(resolveLocation(from, location), expected);
}

TEST(Url, OfThisMachineIsLocalhostOrALoopbackAddress) {
  for (const char* here :
       {"http://localhost", "http://LOCALHOST:8/p", "http://127.1.2.3:8", "http://[::1]:8/p"})
    EXPECT_TRUE(isOnThisMachine(parseUrl(here).value())) << here;
  for (const char* there : {"http://h",
                            "http://localhost.h",
                            "http://127.example.com",
                            "http://[::2]",
                            "http://1.127.0.1"})
    EXPECT_FALSE(isOnThisMachine(parseUrl(there).value())) << there;
}

TEST(Url, OriginIsSchemeHostAndPort) {
  EXPECT_EQ(parseUrl("HTTP://Host:81/p")->origin(), "http://host:81");
  EXPECT_NE(parseUrl("http://h/p")->origin(), parseUrl("https://h/p")->origin());
}

}  // namespace
}  // namespace symsrv_1_0::internal
