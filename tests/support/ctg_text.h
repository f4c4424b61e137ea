#pragma once

namespace orvmesh::test {

// A CTG file of two tetrahedra on face 1, every line of it as the export writes it.
inline const char* const kTwoTetrahedraText = R"([Header]
Version = 1004
Source = Test.ofe
SourceID = 0f3c2a71-5b8e-4d26-9a41-c7e09b35d812
Initial Level = 4
Plastic Level = 5
Cool Level = 3
HT Level = 0
VP Level = 0
SE Level = 0
Element = 2
Node = 5
Face = 7
Plastic Boundary Node = 1
Cool Boundary Node = 1
Air Boundary Node = 1
Plastic Boundary Face = 2
Cool Boundary Face = 3
Air Boundary Face = 2
OFE Plastic Boundary Face = 2
OFE Part Insert Node = 0
Boundary Element = 0
Sensor in Moldbase Number = 0
Inlet Boundary Face = 0
Outlet Boundary Face = 0
Part Kernel Veriosn = 0
[/Header]
[Node]
1 = 0 0 0
2 = 1 0 0
3 = 0 1.25 0
4 = 0 0 4e+06
5 = 0 0 -4e-06
[/Node]
[Element Node]
1 = 1 2 3 4 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
2 = 1 3 2 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
[/Element Node]
[Element Property]
1 = 7 0
2 = 5002 0
[/Element Property]
[Element Face]
1 = 4 1 2 3 4
2 = 4 -1 5 6 7
[/Element Face]
[Face]
1 = 1 4 2 0
2 = 2 5 1 0
3 = 4 5 2 0
4 = 1 5 4 0
5 = 4 6 1 0
6 = 2 6 4 0
7 = 1 6 2 0
[/Face]
[Plastic Boundary Node]
1 = 1 0
[/Plastic Boundary Node]
[Cool Boundary Node]
1 = 2 3
2 = 5 3
[/Cool Boundary Node]
[Air Boundary Node]
1 = 0 0
2 = 3 0
3 = 4 0
[/Air Boundary Node]
[Plastic Boundary Face]
1 = 2 1 2
2 = 5 1 5
[/Plastic Boundary Face]
[Cool Boundary Face]
1 = 1 3
2 = 3 3
3 = 7 3
[/Cool Boundary Face]
[Air Boundary Face]
1 = 4 0
2 = 6 0
[/Air Boundary Face]
[OFE Plastic Boundary Face]
1 = 2 1 2
2 = 5 1 5
[/OFE Plastic Boundary Face]
[OFE Part Insert Node]
[/OFE Part Insert Node]
[Boundary Element]
[/Boundary Element]
[Moldbase Sensor Mapping]
[/Moldbase Sensor Mapping]
[Inlet Face]
[/Inlet Face]
[Outlet Face]
[/Outlet Face]
)";

}  // namespace orvmesh::test
