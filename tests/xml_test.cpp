#include <gmock/gmock.h>

#include <filesystem>

#include "hedro34/xml/expat_document.h"
#include "tests/platform_support.h"

namespace hedro34::testing {
namespace {

using ::testing::StartsWith;

// A node and what is in it: an element as name[a=1 b=2](children), a text as its value in quotes.
std::string shape(IXMLDOMNode& node) {
  const auto attributes = node.attributes();
  if (!attributes) return "'" + to_utf8(to_text(node.nodeTypedValue())) + "'";
  std::string result = to_utf8(node.nodeName());
  for (std::int32_t i = 0; i < attributes->length(); ++i) {
    const auto each = attributes->item(i);
    result += (i == 0 ? "[" : " ") + to_utf8(each->nodeName()) + "=" + to_utf8(to_text(each->nodeValue()));
  }
  if (attributes->length() > 0) result += "]";
  const auto children = node.childNodes();
  for (std::int32_t i = 0; i < children->length(); ++i) result += (i == 0 ? "(" : " ") + shape(*children->item(i));
  return result + (children->length() > 0 ? ")" : "");
}

// The shape of the document element "a", or the file error.
std::string shape(ExpatDocument& document) {
  const auto element = document.selectSingleNode(u"a");
  return element ? shape(*element) : to_line(last_file_error());
}
std::string shape_of(std::string_view xml) {
  ExpatDocument document;
  document.parse(xml);
  return shape(document);
}

std::string utf16(StringView text, bool big_endian) {
  std::string bytes;
  for (const unsigned unit : text) {
    bytes += static_cast<char>(big_endian ? unit >> 8 : unit & 0xFF);
    bytes += static_cast<char>(big_endian ? unit & 0xFF : unit >> 8);
  }
  return bytes;
}

TEST(Xml, KeepsElementsAttributesAndText) {
  const std::pair<const char*, const char*> rows[] = {
      {"<a>1<b>2<f/></b><c/>3<d></d>4</a>", "a('1' b('2' f) c '3' d '4')"},
      {"<a>\n <b> \t\r\n </b>\r\n\t<c>&#32;&#9;<b/>&#x0A;&#13;</c> </a>", "a(b c(b))"},
      {"<a> x <b/>\ny<c>&#160;</c></a>", "a(' x ' b '\ny' c('\u00A0'))"},
      {"<a>1\r\n2\r3\n4&lt;&amp;&gt;&quot;&apos;&#x20AC;&#128512;</a>", "a('1\n2\n3\n4<&>\"'\u20AC\U0001F600')"},
      {"<?p?><!-- --><a>x<!-- - -->y<?p q?>z<b/> <!-- --> <c/> <!-- -->x</a><!-- --><?p?>", "a('xyz' b c ' x')"},
      {"<a>x<![CDATA[<y>&amp;]]>z<![CDATA[1]]><![CDATA[2]]></a>", "a('x' '<y>&amp;' 'z' '1' '2')"},
      {"<a> <![CDATA[]]> <b/><![CDATA[ \n]]>y</a>", "a('' b ' \n' 'y')"},
      {"<a b=' 1\t2\n3&#10;4&#13;&#9; ' a='' c='2'><b x='3'/></a>", "a[b= 1 2 3\n4\r\t  a= c=2](b[x=3])"},
      {"<a xmlns='u' xmlns:p='v'><p:b p:x='1'/><q:b/></a>", "a[xmlns=u xmlns:p=v](p:b[p:x=1] q:b)"},
      {"<!DOCTYPE a [<!ENTITY e 'y&#38;amp;'><!ENTITY e '2'><!ENTITY f '1&e;'>]><a b='0&f;'>x&f;z</a>",
       "a[b=01y&]('x1y&z')"},
      {"<!DOCTYPE a [<!ENTITY e 'y<b>z</b> '>]><a>x&e;<c/></a>", "a('xy' b('z') c)"},
      {"<!DOCTYPE a [<!ENTITY e ' '><!ENTITY f '<![CDATA[ ]]>'>]><a>&e;<b/> &e;x&f;</a>", "a(b '  x' ' ')"},
      {"<!DOCTYPE a [<!ATTLIST b x CDATA 'd' y (m|n) 'm' z NMTOKENS ''>]><a><b/><b y='n' z=' 1  2 '/><c/></a>",
       "a(b[x=d y=m z=] b[y=n z=1 2 x=d] c)"},
  };
  for (const auto& [xml, expected] : rows) EXPECT_EQ(shape_of(xml), expected) << xml;
}

TEST(Xml, NodesAnswerByTheirKind) {
  ExpatDocument document;
  document.parse("<p:a q:x='1&lt;'>s<b>t<c>u<![CDATA[ v]]></c><!-- w --></b>\n<:d/><e:/></p:a>");
  const auto line = [](IXMLDOMNode& node) {
    const std::string value = node.nodeValue().is<Empty>() ? "none" : to_utf8(to_text(node.nodeValue()));
    return to_utf8(node.nodeName()) + ", " + to_utf8(node.baseName()) + ": " + value +
           (node.attributes() ? ", attributes, " : ", ") + to_utf8(to_text(node.nodeTypedValue()));
  };
  const auto root = document.selectSingleNode(u"p:a");
  const auto children = root->childNodes();
  const auto attribute = root->attributes()->item(0);
  EXPECT_EQ(line(*root), "p:a, a: none, attributes, stu v");
  EXPECT_EQ(line(*children->item(0)), "#text, : s, s");
  EXPECT_EQ(line(*children->item(2)), ":d, :d: none, attributes, ");
  EXPECT_EQ(line(*children->item(3)), "e:, e:: none, attributes, ");
  EXPECT_EQ(line(*attribute), "q:x, x: 1<, 1<");
  EXPECT_EQ(children->item(0)->childNodes()->length() + attribute->childNodes()->length(), 0);
}

TEST(Xml, ListsAndMapsAnswerNothingOutside) {
  ExpatDocument document;
  document.parse("<a x='1' X='2' y='' z=''><b/>t<q n='1'><q n='2'/></q><Q n='3'/></a>");
  const auto root = document.selectSingleNode(u"a");
  const auto list = root->childNodes();
  const auto last = list->item(3);
  EXPECT_EQ(shape(*list->nextNode()), "b") << "`item` does not move the place of `nextNode`";
  EXPECT_EQ(shape(*last), "Q[n=3]") << "a handle that is held stays at its node";
  for (const std::int32_t outside : {-1, 4}) EXPECT_FALSE(list->item(outside) || root->attributes()->item(outside));
  EXPECT_EQ(root->attributes()->getNamedItem(u"X")->nodeValue(), Variant(u"2"));
  EXPECT_FALSE(root->attributes()->getNamedItem(u"n"));
  const auto found = document.getElementsByTagName(u"q");
  EXPECT_EQ(found->length(), 2);
  EXPECT_EQ(shape(*found->nextNode()), "q[n=1](q[n=2])");
  EXPECT_EQ(shape(*found->nextNode()), "q[n=2]");
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(found->nextNode());
  EXPECT_EQ(document.getElementsByTagName(u"a")->length(), 1) << "the document element counts";
  EXPECT_EQ(document.getElementsByTagName(u"#text")->length(), 0);
  for (const char16_t* name : {u"A", u"q", u""}) EXPECT_FALSE(document.selectSingleNode(name));
}

TEST(Xml, HandlesOutliveTheDocumentAndARejectedOneIsEmpty) {
  const auto document = make<ExpatDocument>();
  document->parse("<a><b x='1'>t</b></a>");
  const auto node = document->getElementsByTagName(u"b")->item(0);
  EXPECT_FALSE(document->parse("<a><b></a>"));
  EXPECT_FALSE(document->selectSingleNode(u"a"));
  EXPECT_EQ(document->getElementsByTagName(u"b")->length(), 0);
  EXPECT_TRUE(document->parse("<a/>"));
  EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  EXPECT_EQ(shape(*node), "b[x=1]('t')");
}

TEST(Xml, RejectsWhatIsMalformedAndSaysWhere) {
  const std::string type = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'><!ENTITY u '&v;'>]>\n";
  const std::pair<std::string, const char*> rows[] = {
      {"", ": line 1, column 1: there is no element"},
      {std::string(5000, '\0'), ": line 1, column 1: not well-formed"},
      {"hello", ": line 1, column 1: not well-formed: markup"},
      {"<a>\n<b>", ": line 2, column 4: the document ends inside an element"},
      {"<a>\n <b x='", ": line 2, column 2: the document ends inside what starts here"},
      {"<a><![CDATA[b</a>", ": line 1, column 18: unclosed CDATA"},
      {"<a>\u00E9\u20AC\U0001F600</b>", ": line 1, column 9: the end tag does not match the start tag"},
      {"<a/>\n<b/>", ": line 2, column 1: something stands behind the document element"},
      {"<a b='1' b='2'/>", ": line 1, column 10: the element has two attributes"},
      {"<a>\n&#0;</a>", ": line 2, column 1: the character reference stands for no character"},
      {"<a>&nbsp;</a>", ": line 1, column 4: the entity nbsp is not declared"},
      {type + "<a>\n<b c='&u;'/></a>", ": line 3, column 1: the entity v is not declared"},
      {type + "<a>&e;</a>", ": line 2, column 4: the entity e stands for another file, which is not read"},
      {type + "<a b='&e;'/>", ": line 2, column 7: the entity e stands for another file, which is not read"},
      {" <?xml version='1.0'?><a/>", ": line 1, column 2: the XML declaration is not at the start"},
      {"<?xml version='1.0' encoding='klingon'?><a/>", ": line 1, column 31: unknown encoding"},
      {"<?xml version='1.0' encoding='UTF-16'?><a/>", ": line 1, column 31: the file's encoding is not"},
      {"<a>\xC0\x80</a>", ": line 1, column 4: not well-formed"},
      {"<a>\xE2\x82", ": line 1, column 4: the document ends inside a character"},
      {"<?xml version='2.0'?><a/>", ": line 1, column 1: the version of XML is not one of 1.0 to 1.9"},
      {"<?xml version='1.10'?><a/>", ": line 1, column 1: the version of XML"},
      {"<?xml version='1'?><a/>", ": line 1, column 1: the version of XML"},
      {utf16(u"\uFEFF<?xml version='1.a'?><a/>", true), ": line 1, column 2: the version of XML"},
  };
  for (const auto& [xml, expected] : rows) EXPECT_THAT(shape_of(xml), StartsWith(expected));
}

std::string declared(const std::string& encoding, const std::string& content) {
  return "<?xml version='1.0' encoding='" + encoding + "'?><a>" + content + "</a>";
}

TEST(Xml, ReadsEncodings) {
  const std::pair<std::string, const char*> rows[] = {
      {"\xEF\xBB\xBF" + declared("utf-8", "\u00E9\u20AC"), "a('\u00E9\u20AC')"},
      {std::string("\xFE\xFF\0<\0a\0>\x20\xAC\xD8\x3D\xDE\0\0<\0/\0a\0>", 22), "a('\u20AC\U0001F600')"},
      {std::string("\xFF\xFE<\0a\0>\0\xAC\x20\x3D\xD8\0\xDE<\0/\0a\0>\0", 22), "a('\u20AC\U0001F600')"},
      {utf16(u"<a b='\xDBFF\xDFFF\xD800\xDC00'/>", true), "a[b=\U0010FFFF\U00010000]"},
      {utf16(u"<?xml version='1.1' encoding='UTF-16'?><a>\xD7FF\xE000</a>", false), "a('\uD7FF\uE000')"},
      {declared("iso-8859-1", "\x80\x9F\xA0\xE9\xFF"), "a('\u0080\u009F\u00A0\u00E9\u00FF')"},
      {declared("us-Ascii", "\xE9"), ": line 1, column 45: not well-formed: a character that cannot stand here"},
      {declared("Windows-1252", "\x7F\xA0\xFF\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
       "a('\u007F\u00A0\u00FF\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D')"},
      {declared("WINDOWS-1252", "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
       "a('\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178')"},
  };
  for (const auto& [bytes, expected] : rows) EXPECT_EQ(shape_of(bytes), expected);
  for (const char* byte : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
    EXPECT_THAT(shape_of(declared("windows-1252", byte)), StartsWith(": line 1, column 49: "));
  }
}

TEST(Xml, RejectsHalvesOfSurrogatePairs) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"<a>\n \xD83Dx</a>", "line 2, column 2"},
      {u"<a>\xD83D\xDE00\xD83D\xD83D\xDE00</a>", "line 1, column 5"},
      {u"<a>\xDE00\xD83D</a>", "line 1, column 4"},
      {u"<a>\xD83D", "line 1, column 4"},
      {u"<a b='\xD83D\u0100'/>", "line 1, column 7"},
      {u"<a \xD83D\x3C3C='1'/>", "line 1, column 4"},
      {u"<!--\xD83D--><a/>", "line 1, column 5"},
      {u"<a><?p \xD83D?></a>", "line 1, column 8"},
      {u"<a><![CDATA[\r\n\xD83D]]></a>", "line 2, column 1"},
      {u"<!DOCTYPE a [<!ENTITY e '\xD83D'>]><a/>", "line 1, column 26"},
  };
  const auto lone = [](const std::string& line) {
    return ": " + line + ": not well-formed: a character that cannot stand here";
  };
  for (const bool big_endian : {false, true}) {
    for (const auto& [xml, expected] : rows) {
      EXPECT_EQ(shape_of(utf16(xml, big_endian)), lone(expected)) << to_utf8(xml);
    }
    // With every number of bytes up to where the reader's blocks end.
    for (std::size_t i = 0; i < 4; ++i) {
      const std::size_t before = (1 << 17) - 3 - i;
      const String start = u"<a>" + String(before - 1, u'x');
      const std::string pair = repeat("x", before - 1) + "\U0001F600\U0001F600";
      EXPECT_TRUE(shape_of(utf16(start + u"\xD83D\xDE00\xD83D\xDE00</a>", big_endian)) == "a('" + pair + "')") << i;
      EXPECT_EQ(shape_of(utf16(start + u"\xD83D\xDE00\xD83D\x0100</a>", big_endian)),
                lone("line 1, column " + std::to_string(before + 4)));
    }
  }
}

TEST(Xml, RejectsReferencesThatAreNotResolved) {
  const std::string open = "<!DOCTYPE a SYSTEM 'd' [<!ENTITY d 'D'><!ENTITY n '&d;&u;'>";
  const std::string behind = "<!DOCTYPE a [<!ENTITY d 'D'> %x; <!ENTITY u 'U'>";
  const std::string parameter = "<!DOCTYPE a [<!ENTITY % x \"<!ENTITY u 'U'>\"><!ENTITY d '<b c=\"&u;\"/>'> %x;";
  const std::string end = "]>\n<a>\n";
  const std::pair<std::string, std::string> rows[] = {
      {behind + end + "5&u;C</a>", ": line 3, column 2: the entity u is not declared"},
      {parameter + end + "&u;</a>",
       ": line 3, column 1: the entity u is not declared, or behind a parameter entity, where declarations are not "
       "read"},
      {parameter + end + "1 &d;</a>",
       ": line 3, column 3: the entity u is not declared, or behind a parameter entity, where declarations are not "
       "read"},
      {open + end + "&n;</a>", ": line 3, column 1: the entity u is not declared"},
      {open + end + "<b c='1 &d;&amp;&#60;&u;'/></a>", ": line 3, column 1: the entity u is not declared"},
      {open + end + "<b c='1'><e f='&n;'/></b></a>", ": line 3, column 10: the entity u is not declared"},
      {open + "\n<!ATTLIST b\n c CDATA '&n;'>" + end, ": line 3, column 10: the entity u is not declared"},
      {open + "<!ATTLIST b c CDATA '&l;'><!ENTITY l 'L'>" + end, ": line 1, column 80: the entity l is not declared"},
      {utf16(from_utf8(open + end + "<b c='\u00E9&\u00E9;'/></a>"), false), ": line 3, column 1: the entity \u00E9 is"},
      {utf16(from_utf8(open + "<!ATTLIST b c CDATA '" + repeat("x", 3000) + "&u;'>" + end), true),
       ": line 1, column 80: the entity u is"},
      {open + end + "&" + repeat("\u00E9", 1000) + ";</a>",
       ": line 3, column 1: the entity " + repeat("\u00E9", 30) + "... is not declared"},
      {open + "<!ENTITY s SYSTEM 's'>" + end + "&s;</a>", ": line 3, column 1: the entity s stands for another file"},
      {"<!DOCTYPE a [<!ENTITY s SYSTEM 's'><!ENTITY i '<b>&s;</b>'>" + end + "&i;</a>",
       ": line 3, column 1: the entity s stands for another file"},
  };
  for (const auto& [xml, expected] : rows) EXPECT_THAT(shape_of(xml), StartsWith(expected)) << xml;

  // Names in every encoding, with declared entities on the way.
  const std::string type =
      "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY \u00DF SYSTEM 'p' NDATA n><!ENTITY s\u00E9 SYSTEM 's'>"
      "<!ENTITY \u00E9 'E&amp;'><!ENTITY x 'X&\u00E9;'><!ENTITY i '&x;&x;&s\u00E9;&\u00DF;'><!ENTITY u '&x;&\u00FC;'>";
  const std::pair<std::string, std::string> named[] = {
      {"]>\n<a>&deg;&u;</a>", "line 2, column 4: the entity deg is not declared"},
      {"]>\n<a>\u00E9&\u00FC;</a>", "line 2, column 5: the entity \u00FC is not declared"},
      {"]>\n<a b='\u00E9&\u00E9;&\u00FC;'/>", "line 2, column 1: the entity \u00FC is not declared"},
      {"]>\n<a>&x;\n&u;</a>", "line 3, column 1: the entity \u00FC is not declared"},
      {"]>\n<a b='&x;&u;'/>", "line 2, column 1: the entity \u00FC is not declared"},
      {"]>\n<a b='&x;&s\u00E9;'/>", "line 2, column 10: the entity s\u00E9 stands for another file"},
      {"]>\n<a b='&x;&i;&\u00DF;'/>", "line 2, column 1: the entity s\u00E9 stands for another file"},
      {"<!ENTITY b '<b c=\"&i;\"/>'>]>\n<a>&b;</a>", "line 2, column 4: the entity s\u00E9 stands for another file"},
      {"\n<!ATTLIST b c CDATA '&s\u00E9;'>]><a/>", "line 2, column 22: the entity s\u00E9 stands for another file"},
      {"]>\n<a>&\u00DF;</a>", "line 2, column 4: the entity \u00DF stands for another file"},
      {"]>\n<a b='&\u00DF;'/>", "line 2, column 7: the entity \u00DF stands for another file"},
  };
  for (const auto& [end_of_type, expected] : named) {
    const String text = from_utf8(type + end_of_type);
    std::string bytes;
    for (const char16_t c : text) bytes += static_cast<char>(c);
    for (const std::string& file : {type + end_of_type, utf16(text, false), utf16(text, true),
                                    "<?xml version='1.0' encoding='ISO-8859-1'?>" + bytes,
                                    "<?xml version='1.0' encoding='windows-1252'?>" + bytes}) {
      EXPECT_THAT(shape_of(file), StartsWith(": " + expected)) << file;
    }
  }

  const std::pair<std::string, const char*> good[] = {
      {open + "<!--'&u;'--><?p &u;'?><!ELEMENT b (#PCDATA)><!NOTATION n SYSTEM '&u;'><!ENTITY d '&u;'>" + end +
           "&d;<b c='&d;&lt;'/><!--&u;--><?p &u;?><![CDATA[&u;]]></a>",
       "a('\nD' b[c=D<] '&u;')"},
      {open + "<!ATTLIST b c CDATA \"'&d;&#38;u;\">" + end + "<b/></a>", "a(b[c='D&u;])"},
      {open + "<!ENTITY k '<![CDATA[&u;]]><!--&u;--><b c=\"&d;\"/>'>" + end + "&k;</a>", "a('&u;' b[c=D])"},
      {behind + "<!ATTLIST b c CDATA '&u;'>" + end + "<b/>&d;</a>", "a(b 'D')"},
      {"<?xml version='1.0' standalone='yes'?>" + behind + end + "&u;<b c='&u;'/></a>", "a('\nU' b[c=U])"},
  };
  for (const auto& [xml, expected] : good) EXPECT_EQ(shape_of(xml), expected) << xml;
}

TEST(Xml, LoadsByPathAndFetchesNothingElse) {
  const Folder folder;
  std::filesystem::create_directories(to_utf8(folder.path("inner")));
  folder.write("inner/a", "<a>inner/a</a>");
  folder.write("broken", "<a>\n<");
  folder.write("dtd", "<!ENTITY e 'outside'><!ATTLIST a x CDATA 'outside'>");
  const std::string inner = to_utf8(folder.path("inner/a"));
  const std::pair<String, std::string> rows[] = {
      {folder.path("inner\\a"), "a('inner/a')"},
      {folder.path(repeat(".\\", 200) + "inner\\a"), "a('inner/a')"},
      {folder.path("none\\a"), to_utf8(folder.path("none\\a")) + ": No such file or directory"},
      {folder.path("broken"),
       to_utf8(folder.path("broken")) + ": line 2, column 1: the document ends inside what starts here"},
      {folder.write("1", "<!DOCTYPE a [<!ENTITY e SYSTEM '" + inner + "'>]><a>x</a>"), "a('x')"},
      {folder.write("2", "<!DOCTYPE a PUBLIC 'p' 'dtd'><a>x</a>"), "a('x')"},
      {folder.write("3", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'dtd'> %p;]><a>x</a>"), "a('x')"},
  };
  for (const auto& [path, expected] : rows) {
    ExpatDocument document;
    document.load(path);
    EXPECT_EQ(shape(document), expected);
  }
}

TEST(Xml, BoundsTheDepthOfElements) {
  ExpatDocument document;
  EXPECT_TRUE(document.parse(repeat("<a>", 1000) + "x" + repeat("</a>", 1000)));
  EXPECT_TRUE(document.parse("<r>" + repeat("<a><b/></a>", 3000) + "</r>")) << "one beside the other is not deep";
  for (const std::string& deeper : {std::string("<b/>"), repeat("<a>", 1'000'000)}) {
    EXPECT_EQ(shape_of(repeat("<a>", 1000) + deeper),
              ": line 1, column 3001: elements are nested more than 1,000 deep");
  }
}

// Entities e0 to e`count - 1`, each in the one before it or behind it, and the start of a document.
std::string chain(int count, bool backwards) {
  std::string type = "<!DOCTYPE a [";
  for (int i = 0; i < count; ++i) {
    const int n = backwards ? count - 1 - i : i;
    type += "<!ENTITY e" + std::to_string(n) + " '" + (n == 0 ? "ha" : "&e" + std::to_string(n - 1) + ";") + "'>\n";
  }
  return type;
}

TEST(Xml, BoundsTheDepthOfEntities) {
  const char* const deep = "entities are nested more than 1,000 deep";
  for (const bool backwards : {false, true}) {
    const std::string most = chain(1000, backwards);
    EXPECT_EQ(shape_of(most + "]><a>&e999;</a>"), "a('ha')");
    EXPECT_EQ(shape_of(most + "<!ATTLIST a c CDATA '&e999;'>]><a b='&e999;'/>"), "a[b=ha c=ha]");
    EXPECT_THAT(shape_of(chain(1001, backwards) + "]><a/>"), StartsWith(": line 1001, column ")) << "also when unused";
    // Nothing may be expanded in a type that is still open.
    for (const char* used : {"]><a>&e59999;</a>", "]><a b='&e59999;'/>", "<!ATTLIST a b CDATA '&e59999;'>]><a/>"}) {
      EXPECT_THAT(shape_of(chain(60'000, backwards) + used), ::testing::EndsWith(deep));
    }
  }
  const std::string joined = chain(600, true) + "<!ENTITY m '&m1;'><!ENTITY n '&m;'><!ENTITY k0 '&n;'>";
  std::string above;
  for (int i = 1; i < 398; ++i) above += "<!ENTITY k" + std::to_string(i) + " '&k" + std::to_string(i - 1) + ";'>";
  EXPECT_EQ(shape_of(joined + above + "<!ENTITY m1 'x'>]><a>&k397;</a>"), "a('x')");
  EXPECT_THAT(shape_of(joined + above + "<!ENTITY m1 '&e599;'>]><a>&k397;</a>"), ::testing::EndsWith(deep));

  const char* const circles[] = {"<!ENTITY r 'x&r;'>", "<!ENTITY r '&s;'><!ENTITY s '&t;&s2;'><!ENTITY t '&r;'>"};
  for (const std::string circle : circles) {
    EXPECT_THAT(shape_of("<!DOCTYPE a [" + circle + "]><a/>"), ::testing::EndsWith("the entity refers to itself"));
  }
  EXPECT_EQ(shape_of("<!DOCTYPE a [<!ENTITY r '<![CDATA[&r;]]>'>]><a>&r;</a>"), "a('&r;')");
  EXPECT_EQ(shape_of("<!DOCTYPE a [<!ENTITY r 'R'><!ENTITY r '&r;'><!ENTITY % r '&r;'>]><a>&r;</a>"), "a('R')");
}

TEST(Xml, RejectsDocumentsThatBlowUp) {
  const std::string text(20'000, 'x');
  const std::string one = "<!DOCTYPE a [<!ATTLIST b x CDATA '" + text + "'>]><a>";
  std::string defaults = "<!DOCTYPE a [";
  std::string implied = defaults;
  std::string some_implied = defaults;
  std::string list = defaults + "<!ATTLIST b";
  std::string some_listed;
  std::string tag = "<b";
  std::string laughs = defaults + "<!ENTITY e0 'ha'>";
  std::string fan = defaults;
  for (int i = 1; i < 50'000; ++i) {
    const std::string n = std::to_string(i);
    if (i < 40) laughs += "<!ENTITY e" + n + " '" + repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    if (i < 1000) defaults += "<!ATTLIST b x" + n + " CDATA ''>";
    if (i < 1000) some_implied += "<!ATTLIST b x" + n + " NMTOKEN #IMPLIED>";
    if (i == 20'000) some_listed = list;
    if (i < 9000) implied += "<!ATTLIST b x" + n + " NMTOKEN #IMPLIED>";
    if (i < 9000) tag += " x" + n + "=' '";
    list += " x" + n + (i % 2 == 0 ? " CDATA ''" : " (a|b) #IMPLIED");
    fan += "<!ENTITY f" + n + " '&e998;&e997;&e996;'>";
  }
  const std::string rows[] = {
      laughs + "]><a>&e39;</a>",
      laughs + "]><a b='&e39;'/>",
      "<!DOCTYPE a [<!ENTITY e '" + text + "'>]><a>" + repeat("&e;", 9000) + "</a>",
      one + repeat("<b/>", 9000) + "</a>",
      defaults + "]><a>" + repeat("<b/>", 9000) + "</a>",
      implied + "]><a>" + repeat("<b/>", 70'000) + std::string(2'000'000, 'x') +
          "</a>",  // which comes too late to count
      implied + "]><a>" + repeat(tag + "/>", 20) + "</a>",
      list + ">]><a/>",
      fan + chain(1000, true).substr(std::string_view("<!DOCTYPE a [").size()),
  };
  for (const std::string& xml : rows) EXPECT_THAT(shape_of(xml), ::testing::HasSubstr("blow the document up"));
  EXPECT_THAT(shape_of(one + repeat("<b/>", 20) + "</a>"), StartsWith("a(b[x=x"));
  EXPECT_THAT(shape_of(implied + "]><a>" + repeat("<b/>", 1000) + "<c/></a>"), StartsWith("a(b b b"));
  const std::string wide = repeat("<b x6='' x7='' x8='' x9=''/>", 20'000);
  EXPECT_THAT(shape_of(some_implied + "]><a>" + wide + "</a>"), StartsWith("a(b[x6= x7= x8= x9=] b["));
  EXPECT_EQ(shape_of(some_listed + ">]><a/>"), "a");
}

TEST(Xml, ReadsLargePartsAndManyNodes) {
  const std::string large = repeat("0123456789", 2'000'000);
  EXPECT_TRUE(shape_of("<a b='" + large + "'/>") == "a[b=" + large + "]");
  EXPECT_TRUE(shape_of("<a>" + large + "<!--" + large + "-->x</a>") == "a('" + large + "x')");
  std::string xml = "<a>";
  std::string expected = "a";
  for (std::size_t i = 0; i < 30'000; ++i) {
    const std::string number = std::to_string(i);
    xml += "<e" + number + " a='" + number + "'>" + repeat("<b/>", i % 4) + number + "</e" + number + ">\n";
    expected += (i == 0 ? "(e" : " e") + number + "[a=" + number + "](" + repeat("b ", i % 4) + "'" + number + "')";
  }
  EXPECT_EQ(shape_of(xml + "</a>"), expected + ")");
}

}  // namespace
}  // namespace hedro34::testing
