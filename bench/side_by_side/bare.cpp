// What the machine allows: the same work as the command's, done by SQLite, zlib and the file system alone. A
// part is a table of objects and one of attributes; a drawing has 112 lines and 68 texts, a revision row
// 31 objects.
//
//     bare write|read|pdf|svg COUNT FOLDER     bare rows COUNT FILE
#include <sqlite3.h>
#include <zlib.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

[[noreturn]] void fail(const std::string &what)
{
    std::fprintf(stderr, "bare: %s\n", what.c_str());
    std::exit(1);
}

class Base {
public:
    Base(const std::string &path, int flags)
    {
        if (sqlite3_open_v2(path.c_str(), &m_base, flags, nullptr) != SQLITE_OK) fail(path);
    }
    ~Base() { sqlite3_close(m_base); }
    void run(const char *sql)
    {
        if (sqlite3_exec(m_base, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
            fail(sqlite3_errmsg(m_base));
    }
    sqlite3_stmt *prepare(const char *sql)
    {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(m_base, sql, -1, &statement, nullptr) != SQLITE_OK)
            fail(sqlite3_errmsg(m_base));
        return statement;
    }

private:
    sqlite3 *m_base = nullptr;
};

class Inserts {
public:
    explicit Inserts(Base &base, sqlite3_int64 first)
        : m_object(base.prepare("INSERT INTO object VALUES(?,?,?,?)")),
          m_attribute(base.prepare("INSERT INTO attribute VALUES(?,?,?)")), m_next(first)
    {}
    ~Inserts()
    {
        sqlite3_finalize(m_object);
        sqlite3_finalize(m_attribute);
    }
    sqlite3_int64 object(const char *kind, const std::vector<double> &numbers,
                         const std::string &text)
    {
        sqlite3_bind_int64(m_object, 1, m_next);
        sqlite3_bind_text(m_object, 2, kind, -1, SQLITE_STATIC);
        sqlite3_bind_blob(m_object, 3, numbers.data(), static_cast<int>(8 * numbers.size()),
                          SQLITE_STATIC);
        sqlite3_bind_text(m_object, 4, text.c_str(), -1, SQLITE_STATIC);
        step(m_object);
        return m_next++;
    }
    void attribute(sqlite3_int64 object, const char *title, const std::string &value)
    {
        sqlite3_bind_int64(m_attribute, 1, object);
        sqlite3_bind_text(m_attribute, 2, title, -1, SQLITE_STATIC);
        sqlite3_bind_text(m_attribute, 3, value.c_str(), -1, SQLITE_STATIC);
        step(m_attribute);
    }

private:
    static void step(sqlite3_stmt *statement)
    {
        if (sqlite3_step(statement) != SQLITE_DONE) fail("insert");
        sqlite3_reset(statement);
    }
    sqlite3_stmt *m_object;
    sqlite3_stmt *m_attribute;
    sqlite3_int64 m_next;
};

constexpr const char *kTables =
    "CREATE TABLE object(id INTEGER PRIMARY KEY,kind TEXT,numbers BLOB,text TEXT);"
    "CREATE TABLE attribute(object INT,title TEXT,value TEXT,PRIMARY KEY(object,title)) WITHOUT "
    "ROWID;";

std::string valueOf(int drawing, int field)
{
    return "FIELD" + std::to_string(field) + "-" + std::to_string(10'000 + drawing) + "-12345";
}

std::string pathOf(const std::string &folder, int drawing, const char *ending)
{
    char name[32];
    std::snprintf(name, sizeof name, "/b%05d", drawing);
    return folder + name + ending;
}

void syncFolder(const std::string &folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    fsync(file);
    close(file);
}

void writePart(const std::string &path, int drawing)
{
    Base base(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    base.run("PRAGMA synchronous=FULL; BEGIN");
    base.run(kTables);
    {
        Inserts insert(base, 1);
        for (int i = 0; i < 112; ++i) insert.object("line", {1.0 * i, 2, 3, 4}, "");
        for (int i = 0; i < 48; ++i) insert.object("note", {1.0 * i, 2, 3.5}, "label");
        for (int i = 0; i < 20; ++i) {
            const auto field = insert.object("field", {1.0 * i, 2, 1, 1, 1, 1, 1, 0, 0, 0}, "NAME");
            insert.object("note", {1.0 * i, 2, 3.5}, valueOf(drawing, i));
            insert.attribute(field, "VALUE0", valueOf(drawing, i));
        }
    }
    base.run("COMMIT");
}

void write(int count, const std::string &folder)
{
    for (int i = 0; i < count; ++i) {
        const std::string path = pathOf(folder, i, ".part"), temporary = path + ".tmp";
        writePart(temporary, i);
        if (std::rename(temporary.c_str(), path.c_str()) != 0) fail(path);
        syncFolder(folder);
    }
}

void read(int count, const std::string &folder)
{
    std::string json = "{";
    for (int i = 0; i < count; ++i) {
        Base base(pathOf(folder, i, ".part"), SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX);
        sqlite3_stmt *rows = base.prepare("SELECT title,value FROM attribute");
        json += (i ? ",\n\"" : "\n\"") + std::to_string(i) + "\":{";
        while (sqlite3_step(rows) == SQLITE_ROW) {
            json += '"';
            json += reinterpret_cast<const char *>(sqlite3_column_text(rows, 0));
            json += "\":\"";
            json += reinterpret_cast<const char *>(sqlite3_column_text(rows, 1));
            json += "\",";
        }
        json += "}";
        sqlite3_finalize(rows);
    }
    std::FILE *file = std::fopen((folder + "/all.json").c_str(), "wb");
    std::fwrite(json.data(), 1, json.size(), file);
    std::fclose(file);
}

struct Drawing {
    std::vector<std::vector<double>> lines, places;
    std::vector<std::string> texts;
};

Drawing load(const std::string &path)
{
    Base base(path, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX);
    sqlite3_stmt *rows = base.prepare("SELECT kind,numbers,text FROM object");
    Drawing drawing;
    while (sqlite3_step(rows) == SQLITE_ROW) {
        const std::string kind = reinterpret_cast<const char *>(sqlite3_column_text(rows, 0));
        std::vector<double> numbers(static_cast<std::size_t>(sqlite3_column_bytes(rows, 1)) / 8);
        std::memcpy(numbers.data(), sqlite3_column_blob(rows, 1), 8 * numbers.size());
        if (kind == "line") {
            drawing.lines.push_back(std::move(numbers));
        } else if (kind == "note") {
            drawing.places.push_back(std::move(numbers));
            drawing.texts.emplace_back(
                reinterpret_cast<const char *>(sqlite3_column_text(rows, 2)));
        }
    }
    sqlite3_finalize(rows);
    return drawing;
}

void put(const std::string &path, const std::string &bytes)
{
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (!file) fail(path);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
}

// A content stream of the lines and texts; no font, which only makes it faster.
void pdf(int count, const std::string &folder)
{
    for (int i = 0; i < count; ++i) {
        const Drawing drawing = load(pathOf(folder, i, ".part"));
        std::string content;
        char text[160];
        for (const auto &line : drawing.lines) {
            std::snprintf(text, sizeof text, "%g %g m %g %g l S\n", line[0], line[1], line[2],
                          line[3]);
            content += text;
        }
        for (std::size_t t = 0; t < drawing.texts.size(); ++t) {
            std::snprintf(text, sizeof text, "BT /F %g Tf %g %g Td (%s) Tj ET\n",
                          drawing.places[t][2], drawing.places[t][0], drawing.places[t][1],
                          drawing.texts[t].c_str());
            content += text;
        }
        uLongf size = compressBound(content.size());
        std::string packed(size, '\0');
        compress2(reinterpret_cast<Bytef *>(packed.data()), &size,
                  reinterpret_cast<const Bytef *>(content.data()), content.size(), 6);
        packed.resize(size);
        put(pathOf(folder, i, ".pdf"), "%PDF-1.4\n" + packed);
    }
}

void svg(int count, const std::string &folder)
{
    for (int i = 0; i < count; ++i) {
        const Drawing drawing = load(pathOf(folder, i, ".part"));
        std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 420 297\">\n";
        char text[200];
        for (const auto &line : drawing.lines) {
            std::snprintf(text, sizeof text,
                          "<line x1=\"%g\" y1=\"%g\" x2=\"%g\" y2=\"%g\" stroke=\"black\"/>\n",
                          line[0], line[1], line[2], line[3]);
            svg += text;
        }
        for (std::size_t t = 0; t < drawing.texts.size(); ++t) {
            std::snprintf(text, sizeof text, "<text x=\"%g\" y=\"%g\" font-size=\"%g\">%s</text>\n",
                          drawing.places[t][0], drawing.places[t][1], drawing.places[t][2],
                          drawing.texts[t].c_str());
            svg += text;
        }
        put(pathOf(folder, i, ".svg"), svg + "</svg>\n");
    }
}

void rows(int count, const std::string &path)
{
    std::remove(path.c_str());
    writePart(path, 0);
    Base base(path, SQLITE_OPEN_READWRITE);
    base.run("PRAGMA synchronous=FULL; BEGIN");
    {
        Inserts insert(base, 1000);
        for (int i = 0; i < count; ++i) {
            insert.object("row", {1.0 * i, 2}, "REVISIONS");
            for (int k = 0; k < 5; ++k) {
                const auto field = insert.object("field", {1, 2, 1, 1, 1, 1, 1, 0, 0, 0}, "REV");
                insert.object("note", {1, 2, 2.5}, valueOf(i, k));
                insert.attribute(field, "VALUE0", valueOf(i, k));
                for (int l = 0; l < 4; ++l) insert.object("line", {1, 2, 3, 4}, "");
            }
        }
    }
    base.run("COMMIT");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) fail("write|read|pdf|svg|rows COUNT FOLDER");
    const std::string mode = argv[1], where = argv[3];
    const int count = std::atoi(argv[2]);
    if (mode == "write")
        write(count, where);
    else if (mode == "read")
        read(count, where);
    else if (mode == "pdf")
        pdf(count, where);
    else if (mode == "svg")
        svg(count, where);
    else if (mode == "rows")
        rows(count, where);
    else
        fail(mode);
}
