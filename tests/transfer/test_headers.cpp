#include <map>
#include <sstream>

#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

// What each variant makes of a header whose word i is 1000 + i. "c" copied, "=n" the number n, "<n" source
// word n on, anything not named as the first word says.
struct HeaderCase {
  const char* variant;
  const char* unlisted;  // "c" or "0"
  const char* fields;
};

const HeaderCase kCases[] = {
    {"channels", "c",
     R"(0-3 c; 4 <6; 5-6 =0; 7 =7; 8-9 =0; 10-12 c; 13-14 =0; 15 <17; 16-17 =0; 18 c; 19-22 =0;
        23-26 c; 27-28 =0; 29 c; 30 c; 31-32 =0; 36-41 =0; 73 =6)"},
    {"part-inserts", "c", "4 =1006; 5 =1003; 7 =1008; 8-9 =0; 16 =3; 27 =3; 48 =5; 49 =3; 50 =4"},
    {"part-inserts-channels", "c",
     "4 =1006; 5 =1006; 6 =1003; 7 =1007; 8-9 =0; 10 =1009; 16 =1018; 27 =3; 48 =5; 49 =5; 50 =2"},
    {"hot-runner", "0", R"(0-3 c; 4 =2; 5-6 =0; 7 =6; 8-11 =0; 12 c; 13-14 =0; 15 c; 16-22 =0; 23-26 c; 27 =5;
        28 =3; 29 c; 30 <33; 31-41 =0; 42-48 c; 49-50 =0; 51-54 c; 55-57 =0; 59-62 c; 63-71 c; 72 =48; 73 =1;
        75-77 c; 108 =1; 118 c)"},
    {"stream-line", "c", "8-9 =0; 48-50 =0"},
    {"moldbase", "0",
     R"(0-3 c; 4 <5; 5-6 =0; 7 =14; 8-9 =0; 11 =0; 12-14 c; 15 <16; 18 <16; 16-17 =0; 19-26 c;
        29 c; 30 <31; 31 c; 32-41 c; 42-47 <36; 48 =0; 49-50 =0; 51-54 c; 55 =0; 56 <55; 57 c; 59-62 c; 63-71 c;
        72 =48; 73 <20; 75-77 c; 118 c)"},
};

double sourceField(int i) { return i == 0 ? 14001 : i == 29 ? 1 : 1000 + i; }

std::map<int, double> expectedHeader(const HeaderCase& c) {
  std::map<int, double> fields;
  for (int i = 0; i < 120; ++i) fields[i] = c.unlisted[0] == 'c' ? sourceField(i) : 0;
  std::istringstream rows(c.fields);
  for (std::string row; std::getline(rows, row, ';');) {
    std::istringstream parts(row);
    std::string value;
    int first = 0;
    parts >> first;
    int last = first;
    if (parts.peek() == '-') parts.ignore() >> last;
    parts >> value;
    for (int i = first; i <= last; ++i) {
      if (value[0] == 'c') fields[i] = sourceField(i);
      if (value[0] == '<') fields[i] = sourceField(std::stoi(value.substr(1)) + i - first);
      if (value[0] == '=') fields[i] = std::stod(value.substr(1));
    }
  }
  return fields;
}

class Headers : public Transfers, public ::testing::WithParamInterface<HeaderCase> {};

TEST_P(Headers, FieldByField) {
  const auto fields = transferred(GetParam().variant, mold())["header"]["fields"];
  for (const auto& [i, expected] : expectedHeader(GetParam()))
    EXPECT_EQ(fields.value(std::to_string(i), nlohmann::json(0)).get<double>(), expected) << "field " << i;
}

INSTANTIATE_TEST_SUITE_P(Each, Headers, ::testing::ValuesIn(kCases), [](const auto& each) {
  std::string name = each.param.variant;
  std::erase(name, '-');
  return name;
});

}  // namespace
