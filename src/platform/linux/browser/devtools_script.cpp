#include "platform/linux/browser/devtools_script.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Corvetape {

namespace {

constexpr int LongestText = 32767;  // in units of the page's own texts

/// The key as a literal. JSON texts are valid in scripts, too.
QString Literal(const MemberKey& key) {
    if (const auto* index = std::get_if<int32_t>(&key)) return QString::number(*index);
    const QJsonArray array{QString::fromStdString(std::get<std::string>(key))};
    const QString text = QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
    return text.sliced(1, text.size() - 2);
}

/// A function body that sees the document as `d` and cuts texts with `cut`.
QString Function(const QString& document, const QString& body) {
    return QString("(()=>{const d=%1;const cut=t=>typeof t==='string'?t.slice(0,%2):null;%3})()")
        .arg(document)
        .arg(LongestText)
        .arg(body);
}

// What shows the members of the document to an expression. Real nodes refuse to be called with another object
// in their place, and only functions can be called at all: so each node and collection has a stand-in, and
// goes back to itself before it is handed to the page.
constexpr const char* StandIns = R"js(
const raw = new WeakMap(), shown = new WeakMap();
const real = v => raw.get(v) ?? v;
const kind = v => {
  if (v === null || typeof v !== 'object') return '';
  try {
    if (typeof v.nodeType === 'number') return 'node';
    return typeof v.item === 'function' && typeof v.length === 'number' ? 'list' : '';
  } catch (e) { return ''; }
};
const show = (v, owner) => {
  if (typeof v === 'function') return (...a) => show(Reflect.apply(v, owner, a.map(real)));
  const k = kind(v);
  if (!k) return v;
  if (shown.has(v)) return shown.get(v);
  const member = n => n in v ? v[n] : typeof v.namedItem === 'function' ? v.namedItem(n) : undefined;
  const p = new Proxy(k === 'list' ? () => {} : {}, {
    has: (t, n) => n in v,
    get: (t, n) => show(v[n], v),
    set: (t, n, x) => { v[n] = real(x); return true; },
    apply: (t, self, a) => show(member(real(a[0]))),
  });
  raw.set(p, v);
  shown.set(v, p);
  return p;
};
)js";

}  // namespace

QString DocumentScript(const QString& document) {
    return Function(document, "return {title:cut(d.title),url:cut(d.URL),body:!!d.body}");
}

QString ElementScript(const QString& document, const MemberKey& element) {
    return Function(document, QString(R"js(
const key = %1, all = d.body.getElementsByTagName('*');
let e = null;
if (typeof key === 'number') e = all[key] ?? null;
else for (const each of all) {
  if (each.id === key || each.getAttribute('name') === key) { e = each; break; }
}
return e && {title: cut(e.title), innerText: cut(e.innerText), src: cut(e.src)};
)js")
                                  .arg(Literal(element)));
}

QString FrameScript(const QString& document, const MemberKey& frame) {
    return Function(document, QString(R"js(
const key = %1, w = d.defaultView;
const owners = [...d.querySelectorAll('iframe,frame,object,embed')];
const holder = i => owners.find(e => e.contentWindow === w[i]);
const named = i => {
  const e = holder(i);
  if (e && (e.getAttribute('name') === key || e.id === key)) return true;
  try { return w[i].name === key; } catch (error) { return false; }
};
let index = -1;
if (typeof key === 'number') index = key >= 0 && key < w.length ? key : -1;
else for (let i = 0; i < w.length && index < 0; ++i) if (named(i)) index = i;
if (index < 0) return null;
try {
  const f = w[index].document;
  return {index, open: true, url: cut(f.URL)};
} catch (error) { return {index, open: false, url: cut(holder(index)?.src) ?? ''}; }
)js")
                                  .arg(Literal(frame)));
}

QString FrameOwnerScript(const QString& document, int index) {
    return Function(document, QString("return [...d.querySelectorAll('iframe,frame,object,embed')]"
                                      ".find(e=>e.contentWindow===d.defaultView[%1])??null")
                                  .arg(index));
}

QString ExpressionScript(const QString& expression) {
    return QString(
               "((run)=>{%1const v=real(run(show(document)));"
               "return v===null||v===undefined?'':String(v).slice(0,%2)})"
               "(function(Doc){with(Doc){return (%3\n)}})")
        .arg(QString(StandIns), QString::number(LongestText), expression);
}

QString FrameDocument(const QString& document, int index) {
    return QString("(%1).defaultView[%2].document").arg(document).arg(index);
}

}  // namespace Corvetape
