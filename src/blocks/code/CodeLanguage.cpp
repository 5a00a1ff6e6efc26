#include "blocks/code/CodeLanguage.h"

#include <QHash>

#include <algorithm>

namespace tallowby {

namespace {

/// What a line leaves open for the next one: a block comment, or the long string with this number less two.
constexpr int kPlain = 0;
constexpr int kInComment = 1;
constexpr int kInFirstLongString = 2;

QSet<QString> words(const char *text) {
    const QStringList list = QString::fromLatin1(text).split(u' ');
    return {list.begin(), list.end()};
}

CodeLanguage cLike(const char *id, const char *name, const char *keywords) {
    return {.id = QString::fromLatin1(id),
            .name = QString::fromLatin1(name),
            .keywords = words(keywords),
            .lineComments = {QStringLiteral("//")},
            .blockCommentStart = QStringLiteral("/*"),
            .blockCommentEnd = QStringLiteral("*/"),
            .quotes = QStringLiteral("\"'"),
            .longQuotes = {}};
}

CodeLanguage hashed(const char *id, const char *name, const char *keywords) {
    return {.id = QString::fromLatin1(id),
            .name = QString::fromLatin1(name),
            .keywords = words(keywords),
            .lineComments = {QStringLiteral("#")},
            .blockCommentStart = {},
            .blockCommentEnd = {},
            .quotes = QStringLiteral("\"'"),
            .longQuotes = {}};
}

QList<CodeLanguage> makeAll() {
    CodeLanguage plain{.id = QStringLiteral("plain"), .name = QStringLiteral("Plain text")};
    CodeLanguage javascript = cLike(
        "javascript", "JavaScript",
        "async await break case catch class const continue debugger default delete do else export extends false "
        "finally for from function get if import in instanceof let new null of return set static super switch this "
        "throw true try typeof undefined var void while with yield");
    javascript.longQuotes = QStringList{QStringLiteral("`")};
    CodeLanguage typescript = javascript;
    typescript.id = QStringLiteral("typescript");
    typescript.name = QStringLiteral("TypeScript");
    typescript.keywords |=
        words("abstract any as boolean declare enum implements interface keyof namespace never number "
              "private protected public readonly string type unknown");
    CodeLanguage go = cLike("go", "Go",
                            "break case chan const continue default defer else fallthrough false for func go goto if "
                            "import interface map nil package range return select struct switch true type var");
    go.longQuotes = QStringList{QStringLiteral("`")};
    CodeLanguage swift = cLike(
        "swift", "Swift",
        "actor any as associatedtype async await break case catch class continue default defer deinit do else enum "
        "extension fallthrough false fileprivate final for func guard if import in init inout internal is let "
        "mutating nil open override private protocol public repeat return self Self some static struct subscript "
        "super switch throw throws true try typealias var weak where while");
    swift.longQuotes = QStringList{QStringLiteral("\"\"\"")};
    swift.quotes = QStringLiteral("\"");
    CodeLanguage rust = cLike(
        "rust", "Rust",
        "as async await break const continue crate dyn else enum extern false fn for if impl in let loop match mod "
        "move mut pub ref return self Self static struct super trait true type unsafe use where while");
    // A lone quote begins the name of a lifetime as well.
    rust.quotes = QStringLiteral("\"");
    CodeLanguage python = hashed(
        "python", "Python",
        "and as assert async await break class continue def del elif else except False finally for from global if "
        "import in is lambda match None nonlocal not or pass raise return self True try while with yield");
    python.longQuotes = {QStringLiteral("\"\"\""), QStringLiteral("'''")};
    CodeLanguage sql = cLike(
        "sql", "SQL",
        "add all alter and as asc begin between by case commit create delete desc distinct drop else end exists "
        "foreign from full group having if in index inner insert into is join key left like limit not null on or "
        "order outer primary references right rollback select set table then union unique update values view when "
        "where with");
    sql.lineComments = QStringList{QStringLiteral("--")};
    sql.isCaseSensitive = false;
    CodeLanguage json = cLike("json", "JSON", "true false null");
    json.quotes = QStringLiteral("\"");
    CodeLanguage css =
        cLike("css", "CSS", "important media import supports keyframes from to auto none inherit initial");
    css.lineComments.clear();
    CodeLanguage php = cLike(
        "php", "PHP",
        "abstract and array as break case catch class const continue default do echo else elseif extends false final "
        "finally fn for foreach function if implements interface isset match namespace new null or private protected "
        "public return static switch throw trait true try unset use var while yield");
    php.lineComments << QStringLiteral("#");
    CodeLanguage html{.id = QStringLiteral("html"),
                      .name = QStringLiteral("HTML"),
                      .keywords = {},
                      .lineComments = {},
                      .blockCommentStart = QStringLiteral("<!--"),
                      .blockCommentEnd = QStringLiteral("-->"),
                      .quotes = QStringLiteral("\"")};

    return {
        plain,
        cLike(
            "cpp", "C / C++",
            "alignas auto bool break case catch char class co_await co_return const constexpr continue default delete "
            "do "
            "double else enum explicit extern false final float for friend if include inline int long mutable "
            "namespace "
            "new noexcept nullptr operator override private protected public return short signed sizeof static "
            "static_cast struct switch template this throw true try typedef typename union unsigned using virtual void "
            "volatile while define ifdef ifndef endif pragma"),
        cLike("csharp", "C#",
              "abstract as async await base bool break byte case catch char class const continue decimal default "
              "delegate "
              "do double else enum event explicit false finally float for foreach get if in int interface internal is "
              "lock "
              "long namespace new null object out override params private protected public readonly record ref return "
              "sealed set short static string struct switch this throw true try typeof using var virtual void while "
              "yield"),
        css,
        go,
        html,
        cLike(
            "java", "Java",
            "abstract assert boolean break byte case catch char class const continue default do double else enum "
            "extends "
            "false final finally float for if implements import instanceof int interface long native new null package "
            "private protected public record return short static super switch synchronized this throw throws true try "
            "var void volatile while"),
        javascript,
        json,
        cLike("kotlin", "Kotlin",
              "abstract as break by class companion const continue data do else enum false final for fun if import in "
              "init "
              "inline interface internal is lateinit null object open override package private protected public return "
              "sealed super suspend this throw true try typealias val var when where while"),
        php,
        python,
        hashed("ruby", "Ruby",
               "alias and begin break case class def defined do else elsif end ensure false for if in module next nil "
               "not or "
               "redo require rescue retry return self super then true undef unless until when while yield"),
        rust,
        hashed("shell", "Shell",
               "alias break case cd continue do done echo elif else esac eval exec exit export fi for function if in "
               "local "
               "read return set shift source test then trap unset until while"),
        sql,
        swift,
        typescript,
        hashed("yaml", "YAML", "true false null yes no on off"),
    };
}

const QHash<QString, QString> &otherNames() {
    static const QHash<QString, QString> kNames{
        {QStringLiteral("c"), QStringLiteral("cpp")},         {QStringLiteral("c++"), QStringLiteral("cpp")},
        {QStringLiteral("js"), QStringLiteral("javascript")}, {QStringLiteral("ts"), QStringLiteral("typescript")},
        {QStringLiteral("py"), QStringLiteral("python")},     {QStringLiteral("bash"), QStringLiteral("shell")},
        {QStringLiteral("sh"), QStringLiteral("shell")},      {QStringLiteral("c#"), QStringLiteral("csharp")},
        {QStringLiteral("rb"), QStringLiteral("ruby")},       {QStringLiteral("rs"), QStringLiteral("rust")},
        {QStringLiteral("yml"), QStringLiteral("yaml")},      {QStringLiteral("golang"), QStringLiteral("go")},
    };
    return kNames;
}

bool isWordPart(QChar character) {
    return character.isLetterOrNumber() || character == u'_';
}

qsizetype endOfQuoted(const QString &line, qsizetype from, QChar quote) {
    for (qsizetype i = from; i < line.size(); ++i) {
        if (line[i] == u'\\') {
            ++i;
        } else if (line[i] == quote) {
            return i + 1;
        }
    }
    return line.size();
}

bool startsAt(const QString &line, qsizetype place, const QString &mark) {
    return !mark.isEmpty() && QStringView(line).sliced(place).startsWith(mark);
}

bool startsOneAt(const QString &line, qsizetype place, const QStringList &marks) {
    return std::ranges::any_of(marks, [&](const QString &mark) { return startsAt(line, place, mark); });
}

} // namespace

const QList<CodeLanguage> &CodeLanguage::all() {
    static const QList<CodeLanguage> kLanguages = makeAll();
    return kLanguages;
}

const CodeLanguage &CodeLanguage::named(const QString &id) {
    const QString lower = id.toLower();
    const QString wanted = otherNames().value(lower, lower);
    const auto found = std::ranges::find(all(), wanted, &CodeLanguage::id);
    return found == all().end() ? all().front() : *found;
}

int lexCodeLine(const CodeLanguage &language, const QString &line, int state,
                const std::function<void(int, int, CodeToken)> &tell) {
    qsizetype place = 0;
    int open = std::max(state, kPlain);
    const auto take = [&](qsizetype end, CodeToken token) {
        tell(int(place), int(end - place), token);
        place = end;
    };
    /// Up to the mark that ends what is open, which stays open when the line has none.
    const auto takeUpTo = [&](const QString &mark, qsizetype from, CodeToken token) {
        const qsizetype end = line.indexOf(mark, from);
        if (end >= 0) {
            open = kPlain;
        }
        take(end < 0 ? line.size() : end + mark.size(), token);
    };
    if (open == kInComment && !language.blockCommentEnd.isEmpty()) {
        takeUpTo(language.blockCommentEnd, 0, CodeToken::comment);
    } else if (open >= kInFirstLongString && open - kInFirstLongString < language.longQuotes.size()) {
        takeUpTo(language.longQuotes[open - kInFirstLongString], 0, CodeToken::text);
    } else {
        open = kPlain;
    }
    while (place < line.size()) {
        const QChar character = line[place];
        const auto longQuote = std::ranges::find_if(language.longQuotes,
                                                    [&](const QString &quote) { return startsAt(line, place, quote); });
        if (startsAt(line, place, language.blockCommentStart)) {
            open = kInComment;
            takeUpTo(language.blockCommentEnd, place + language.blockCommentStart.size(), CodeToken::comment);
        } else if (longQuote != language.longQuotes.end()) {
            open = kInFirstLongString + int(longQuote - language.longQuotes.begin());
            takeUpTo(*longQuote, place + longQuote->size(), CodeToken::text);
        } else if (startsOneAt(line, place, language.lineComments)) {
            take(line.size(), CodeToken::comment);
        } else if (language.quotes.contains(character)) {
            take(endOfQuoted(line, place + 1, character), CodeToken::text);
        } else if (character.isDigit() && language.id != u"plain") {
            qsizetype end = place;
            while (end < line.size() && (isWordPart(line[end]) || line[end] == u'.')) {
                ++end;
            }
            take(end, CodeToken::number);
        } else if (isWordPart(character)) {
            qsizetype end = place;
            while (end < line.size() && isWordPart(line[end])) {
                ++end;
            }
            const QString word = line.sliced(place, end - place);
            if (language.keywords.contains(language.isCaseSensitive ? word : word.toLower())) {
                take(end, CodeToken::keyword);
            }
            place = end;
        } else {
            ++place;
        }
    }
    return open;
}

} // namespace tallowby
