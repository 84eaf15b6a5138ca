#include "display/HostileTexts.h"

#include "base/Json.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace corvane::testing {
namespace {

using namespace std::string_literals;

/// RUN is a script, RUNS the same with its brackets and quotes as character references, SITE the server.
const std::vector<std::string> texts{
    // Script elements.
    "<script>RUN</script>",
    "<SCRIPT>RUN</SCRIPT>",
    "<script src=SITE/script></script>",
    "<script src=//HOST/script></script>",
    "<script type=module>RUN</script>",
    "<script type=module src=SITE/script></script>",
    "<script async defer src='SITE/script' crossorigin></script>",
    "<script language=vbscript>RUN</script><script type=text/jscript>RUN</script>",
    "<script\f\n>RUN</script\t\n foo>",
    "<script/x>RUN</script/x>",
    "<scr<script>ipt>RUN</scr</script>ipt>",
    "<<script>RUN//<</script>",
    "<script><!--\nRUN\n--></script>",
    "<script>RUN",
    "<script nonce=a integrity=''>RUN</script>",
    "</p><script>RUN</script>",
    "</style></head><script>RUN</script>",
    "</body></html><script>RUN</script>",
    "<link rel=modulepreload href=SITE/script>",
    "<script type=speculationrules>{\"prefetch\":[{\"urls\":[\"SITE/frame\"]}]}</script>",
    "<script type=importmap>{\"imports\":{\"a\":\"SITE/script\"}}</script><script type=module>import 'a'</script>",
    // Event handlers.
    "<body onload=\"RUN\">",
    "<body onpageshow=\"RUN\" onfocus=\"RUN\" onresize=\"RUN\">",
    "<img src=x: onerror=\"RUN\">",
    "<img src=SITE/seen onload=\"RUN\">",
    "<img/src=x:/onerror=RUN>",
    "<img src='x:' onerror='RUNS'>",
    "<img src=`x:` onerror=`RUN`>",
    "<IMG SRC=x: OnErRoR=\"RUN\">",
    "<img srcset='x: 1x' onerror=\"RUN\">",
    "<picture><source srcset=x:><img onerror=\"RUN\" src=x:></picture>",
    "<image src=x: onerror=\"RUN\">",
    "<input autofocus onfocus=\"RUN\">",
    "<input type=image src=x: onerror=\"RUN\">",
    "<select autofocus onfocus=\"RUN\"><option>a</select>",
    "<textarea autofocus onfocus=\"RUN\">a</textarea>",
    "<button autofocus onfocus=\"RUN\">a</button>",
    "<div contenteditable autofocus onfocus=\"RUN\">a</div>",
    "<a href='#' id=a autofocus onfocus=\"RUN\">a</a>",
    "<details open ontoggle=\"RUN\">a</details>",
    "<dialog open oncancel=\"RUN\" onclose=\"RUN\">a</dialog>",
    "<marquee onstart=\"RUN\">a</marquee>",
    "<video onerror=\"RUN\"><source onerror=\"RUN\" src=x:></video>",
    "<video src=SITE/frame onerror=\"RUN\" autoplay></video>",
    "<video poster=SITE/seen onloadstart=\"RUN\" src=data:,></video>",
    "<audio src=x: onerror=\"RUN\" autoplay></audio>",
    "<audio src=SITE/frame autoplay></audio>",
    "<track src=SITE/frame default><video><track src=SITE/frame default></video>",
    "<object data=x: onerror=\"RUN\"></object>",
    "<iframe onload=\"RUN\"></iframe>",
    "<iframe src=SITE/frame onload=\"RUN\"></iframe>",
    "<style onload=\"RUN\"></style>",
    "<link rel=stylesheet href=data:text/css, onload=\"RUN\">",
    "<p style='animation: a 1ms' onanimationstart=\"RUN\" onanimationend=\"RUN\">a</p><style>@keyframes a {}</style>",
    "<p style='transition: color 1ms' ontransitionend=\"RUN\">a</p>",
    "<p onmouseover=\"RUN\" onpointerenter=\"RUN\" onmousemove=\"RUN\" style='position:fixed;inset:0'>a</p>",
    "<form oninvalid=\"RUN\"><input required oninvalid=\"RUN\"></form>",
    "<p onbeforeinput=\"RUN\" onscroll=\"RUN\" onscrollend=\"RUN\" style='height:9em;overflow:scroll'>a</p>",
    // Drawings and formulas.
    "<svg onload=\"RUN\"></svg>",
    "<svg/onload=RUN>",
    "<svg><script>RUN</script></svg>",
    "<svg><script href=SITE/script /></svg>",
    "<svg><script xlink:href='data:text/javascript,RUN' /></svg>",
    "<svg><script>&#x3c;!--&#x0a;RUNS</script></svg>",
    "<svg><g onload=\"RUN\"></g></svg>",
    "<svg><animate onbegin=\"RUN\" attributeName=x dur=1s></svg>",
    "<svg><set onbegin=\"RUN\" attributeName=x to=y></svg>",
    "<svg><a><animate attributeName=href values='javascript:RUN' /><text y=20>a</text></a></svg>",
    "<svg><image href=x: onerror=\"RUN\" /></svg>",
    "<svg><use href='SITE/frame#a' /></svg>",
    "<svg><use href=\"data:image/svg+xml,<svg id='a' xmlns='http://www.w3.org/2000/svg' onload='RUN'/>#a\" /></svg>",
    "<svg><foreignObject><iframe src=SITE/frame></iframe><img src=x: onerror=\"RUN\"></foreignObject></svg>",
    "<svg><style>@import 'SITE/style';</style></svg>",
    "<svg><filter id=a><feImage href='SITE/seen' /></filter><rect filter='url(SITE/frame#a)' width=9 /></svg>",
    "<img src=\"data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' onload='RUN'><script>RUN</script></svg>\">",
    "<math><maction actiontype='statusline#x' xlink:href='javascript:RUN'>a</maction></math>",
    "<math href='javascript:RUN'>a</math>",
    "<math><annotation-xml encoding='text/html'><img src=x: onerror=\"RUN\"></annotation-xml></math>",
    // Addresses that are scripts.
    "<iframe src='javascript:RUN'></iframe>",
    "<iframe src=' jav&#9;ascript:RUN'></iframe>",
    "<frameset><frame src='javascript:RUN'></frameset>",
    "<object data='javascript:RUN'></object>",
    "<embed src='javascript:RUN'>",
    "<img src='javascript:RUN'><input type=image src='javascript:RUN'>",
    "<body background='javascript:RUN'>",
    "<table background='javascript:RUN'><td background='javascript:RUN'>a</table>",
    "<link rel=stylesheet href='javascript:RUN'>",
    "<form action='javascript:RUN'><input autofocus></form>",
    "<p style=\"background:url('javascript:RUN')\">a</p>",
    "<p style=\"width:expression(RUN);behavior:url(SITE/script);-moz-binding:url(SITE/script)\">a</p>",
    // Refreshes, bases, links of the head.
    "<meta http-equiv=refresh content='0;url=SITE/away'>",
    "<meta http-equiv=refresh content='0;url=javascript:RUN'>",
    "<meta http-equiv=refresh content='0;url=data:text/html,<script>RUN</script>'>",
    "<META HTTP-EQUIV=\"Refresh\" CONTENT=\"0; URL='SITE/away'\">",
    "<meta http-equiv=content-security-policy content=\"default-src * 'unsafe-inline'\"><script>RUN</script>",
    "<meta http-equiv=set-cookie content='a=b'><meta http-equiv=refresh content='0;url=SITE/away#;url=x'>",
    "<meta http-equiv=content-type content='text/html; charset=utf-7'>+ADw-script+AD4-RUN+ADw-/script+AD4-",
    "<meta http-equiv=x-dns-prefetch-control content=on><link rel=dns-prefetch href=//HOST>",
    "<base href='SITE/frame/'><script src=script></script><iframe src=frame></iframe>",
    "<base href='javascript:RUN//'><a href=x autofocus>a</a>",
    "<link rel=stylesheet href=SITE/style>",
    "<link rel='alternate stylesheet' title=a href=SITE/style>",
    "<link rel=preload as=script href=SITE/script><link rel=prefetch href=SITE/frame>",
    "<link rel=preload as=image href=SITE/seen><link rel=preload as=font crossorigin href=SITE/style>",
    "<link rel=prerender href=SITE/away><link rel=preconnect href=SITE>",
    "<link rel=icon href=SITE/style><link rel=manifest href=SITE/frame><link rel=import href=SITE/frame>",
    // Frames and plug-ins.
    "<iframe src=SITE/frame></iframe>",
    "<iframe srcdoc=\"<script>RUNS</script><img src='SITE/framed'>\"></iframe>",
    "<iframe src=\"data:text/html,<script>RUN</script><img src='SITE/framed'>\"></iframe>",
    "<iframe sandbox='allow-scripts allow-same-origin allow-top-navigation' src=SITE/frame></iframe>",
    "<iframe loading=eager credentialless src='//HOST/frame'></iframe>",
    "<iframe src='about:blank#a'></iframe><iframe src='file:///etc/passwd'></iframe><iframe src='//'></iframe>",
    "<frameset onload=\"RUN\"><frame src=SITE/frame></frameset>",
    "<object data=SITE/frame type=text/html><img src=SITE/seen></object>",
    "<object data=\"data:text/html,<script>RUN</script><img src='SITE/framed'>\"></object>",
    "<object><param name=movie value=SITE/frame><embed src=SITE/frame type=application/x-shockwave-flash></object>",
    "<embed src=SITE/frame type=text/html><embed src='data:image/svg+xml,<svg onload=\"RUN\"/>'>",
    "<applet code=a archive=SITE/frame codebase=SITE/frame></applet>",
    "<portal src=SITE/frame></portal><fencedframe src=SITE/frame></fencedframe><webview src=SITE/frame></webview>",
    "<xml src=SITE/frame id=a></xml><bgsound src=SITE/frame><layer src=SITE/frame></layer><ilayer src=SITE/frame>",
    // Styles.
    "<style>@import 'SITE/style';</style>",
    "<style>@import url(SITE/style) screen; @charset 'utf-8';</style>",
    "<style>@font-face { font-family: a; src: url(SITE/style) } p { font-family: a }</style><p>a</p>",
    "<style>p { background: url(SITE/seen); mask: url(SITE/seen); clip-path: url(SITE/frame#b) }</style><p>a</p>",
    "<style>p { filter: url(SITE/frame#a); cursor: url(SITE/seen), auto; content: url(SITE/seen) }</style><p>a</p>",
    "<p style=\"background: url(SITE/seen); list-style: url(SITE/seen); -webkit-mask: url(SITE/seen)\">a</p>",
    "<style>*{x:expression(RUN)} </style><style><!--</style><script>RUN</script>--></style>",
    "<style>a::before { content: attr(href) } [value^=a] { background: url(SITE/seen?leak) }</style><input value=a>",
    // Forms.
    "<form action=SITE/away method=post id=f><input name=a></form><input type=submit form=f autofocus>",
    "<form action=SITE/away target=_blank><button autofocus formaction=SITE/away>a</button></form>",
    "<isindex action='javascript:RUN' type=image><keygen autofocus onfocus=\"RUN\">",
    "<input type=file autofocus onclick=\"RUN\"><input type=password name=p autocomplete=current-password>",
    "<input list=l autofocus><datalist id=l><option onfocus=\"RUN\">a</datalist><output onforminput=\"RUN\">",
    // Text that reads differently the second time.
    "<noscript><p title=\"</noscript><img src=x: onerror='RUN'>\"></noscript>",
    "<noscript><style></noscript><img src=x: onerror='RUN'></style></noscript>",
    "<noscript><img src=SITE/seen><iframe src=SITE/frame></iframe></noscript>",
    "<noscript><meta http-equiv=refresh content=0;SITE/away></noscript>",
    "<template><script>RUN</script></template><div><template shadowrootmode=open><script>RUN</script></template></div>",
    "<div><template shadowrootmode=open><iframe src=SITE/frame></iframe></template></div>",
    "<div>a<template shadowrootmode=open><slot onslotchange=\"RUN\"></slot></template></div>",
    "<math><mtext><table><mglyph><style><!--</style><img title=\"--&gt;&lt;img src=x: onerror='RUN'&gt;\">",
    "<form><math><mtext></form><form><mglyph><style></math><img src=x: onerror=\"RUN\">",
    "<svg></p><style><a id=\"</style><img src=x: onerror='RUN'>\">",
    "<math><annotation-xml><foreignobject><style><!--</style><p id=\"--><img src=x: onerror='RUN'>\">",
    "<svg><![CDATA[><img src=x: onerror=\"RUN\">]]></svg>",
    "<!--><img src=x: onerror=\"RUN\">--><!--[if IE]><script>RUN</script><![endif]-->",
    "<!-- --!><img src=x: onerror=\"RUN\"> --><!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/passwd'>]>&b;",
    "<?xml-stylesheet href='SITE/style'?><?php RUN ?><![CDATA[<script>RUN</script>]]>",
    "<title></title><script>RUN</script><title><p></title><img src=x: onerror=\"RUN\"></p>",
    "<textarea></textarea><script>RUN</script><textarea>",
    "<xmp><p></xmp><script>RUN</script></p>",
    "<plaintext><script>RUN</script></p>",
    "<noembed><p></noembed><script>RUN</script><noframes></noframes><script>RUN</script></p>",
    "<select><script>RUN</script><template><script>RUN</script></template><iframe src=SITE/frame></select>",
    "<table><tr><script>RUN</script><td background=SITE/seen><caption><img src=x: onerror=\"RUN\"></table>",
    "<a><b><p></a></b><script>RUN</script><a href=x><a href=y></a></a></p>",
    "<button><p></button><h1><script>RUN</script></h1><option><optgroup><script>RUN</script>",
    // Characters and entities.
    "&lt;script&gt;RUN&lt;/script&gt;<p>",
    "&#60;script&#62;RUN&#60;/script&#62;<p>",
    "<p>\\u003cscript\\u003eRUN\\u003c/script\\u003e %3Cscript%3ERUN%3C/script%3E</p>",
    "<p>＜script＞RUN＜/script＞ ¼script¾RUN¼/script¾</p>",
    "<scr\u00adipt>RUN</scr\u00adipt><p>\u202e\u2066<script>RUN</script>\u2069\u202c</p>",
    "<\0script>RUN</script><scri\0pt>RUN</script><p>"s,
    "<p a=\"'>\" b='\">' c=`>` d=<script>RUN</script>></p>",
    "<p title=\"\"onmouseover=\"RUN\"style=\"position:fixed;inset:0\">a</p>",
    "{{THEME_CSS}}<style>{{THEME_CSS}}</style><script>{{THEME_CSS}}RUN</script>",
    "{{VERSION}}<script>'{{BUILD_DATE}}';RUN</script>",
    "plain text, <script>RUN and nothing that ends",
    "javascript:RUN",
};

const std::vector<std::string> links{
    "href='javascript:RUN'",
    "href='JAVASCRIPT:RUN'",
    "href=' &#1;javascript:RUN'",
    "href='java&#9;scr&#10;ipt&#58;RUN'",
    "href='javascript://x/%0aRUN' target=_blank",
    "href='javascript:RUN' target=_top rel=opener",
    "href='feed:javascript:RUN'",
    "href='view-source:javascript:RUN'",
    "href='vbscript:RUN'",
    "href='livescript:RUN' onclick=\"RUN\"",
    "href='#' onclick=\"RUN\" onmousedown=\"RUN\" onpointerup=\"RUN\"",
    "href='data:text/html,<script>RUN</script>'",
    "href='data:text/html;base64,PHNjcmlwdD5hbGVydCgxKTwvc2NyaXB0Pg==' target=_blank",
    "href='data:image/svg+xml,<svg xmlns=%22http://www.w3.org/2000/svg%22 onload=%22RUN%22/>'",
    "href='data:application/xhtml+xml,<html xmlns=%22http://www.w3.org/1999/xhtml%22><script>RUN</script></html>'",
    "href='blob:null/2b1d' target=_blank",
    "href='about:srcdoc'",
    "href='about:blank'",
    "href='file:///etc/passwd' target=_blank",
    "href='webkit://gpu' download",
    "href='resource:///org/gtk/libgtk/icons/' target=_blank",
    "href='ws://HOST/frame'",
    "href='ftp://HOST/frame'",
    "href='//' ping='SITE/script SITE/away'",
    "href='x-unknown:RUN' ping='SITE/script'",
    "href='data:,x' ping=SITE/script",
    "href=''",
};

std::string filled(std::string text, const std::string& name, const std::string& value)
{
    for (auto place = text.find(name); place != std::string::npos; place = text.find(name, place + value.size()))
        text.replace(place, name.size(), value);
    return text;
}

std::vector<std::string> allFilled(std::vector<std::string> all, const std::string& site)
{
    for (auto& text : all) {
        text = filled(std::move(text), "RUNS", "new Image().src=&#96;SITE/script&#x60;");
        text = filled(std::move(text), "RUN", "new/**/Image().src=`SITE/script`");
        text = filled(std::move(text), "SITE", site);
        text = filled(std::move(text), "HOST", site.substr(site.find("//") + 2));
    }
    return all;
}

} // namespace

std::vector<std::string> hostileTexts(const std::string& site)
{
    return allFilled(texts, site);
}

std::vector<std::string> hostileLinks(const std::string& site)
{
    return allFilled(links, site);
}

std::vector<std::string> naughtyStrings()
{
    std::ifstream file(std::filesystem::path(CORVANE_SOURCE_DIR) / "../shared/corpora/strings/blns.json");
    const auto document = parseJson(std::string(std::istreambuf_iterator<char>(file), {}));
    std::vector<std::string> strings;
    if (document && document->is_array()) {
        for (const auto& entry : *document) {
            if (const auto* text = textOf(&entry))
                strings.push_back(*text);
        }
    }
    return strings;
}

} // namespace corvane::testing
