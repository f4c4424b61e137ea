#!/usr/bin/python3
"""Draws a mold that `orvmesh export` wrote as VTU, with steel cut away in front: down to the middle plane on the
left, behind the inserts on the right (Debian: python3-vtk9; without a screen: xvfb-run).
"""
import argparse

import vtk

# name, component, material range, group range, colour, which cut applies
PLASTIC, STEEL, CHANNEL = 1, 2, 3
LOOKS = [
    ("mold base", STEEL, (0, 5000), None, (0.62, 0.66, 0.71), "steel"),
    ("inserts", STEEL, (5001, 10001), None, (0.83, 0.62, 0.22), None),
    ("part", PLASTIC, None, (0, 200), (0.85, 0.25, 0.22), "part"),
    ("hot runner", PLASTIC, None, (201, 300), (0.96, 0.55, 0.10), None),
    ("coolant", CHANNEL, (1, 1), None, (0.16, 0.47, 0.80), None),
    ("heater", CHANNEL, (2, 2), None, (0.60, 0.10, 0.35), None),
]


def within(source, array, first, last):
    pick = vtk.vtkThreshold()
    pick.SetInputConnection(source.GetOutputPort())
    pick.SetInputArrayToProcess(0, 0, 0, vtk.vtkDataObject.FIELD_ASSOCIATION_CELLS, array)
    pick.SetThresholdFunction(vtk.vtkThreshold.THRESHOLD_BETWEEN)
    pick.SetLowerThreshold(first)
    pick.SetUpperThreshold(last)
    return pick


def half_space(origin, normal):
    plane = vtk.vtkPlane()
    plane.SetOrigin(*origin)
    plane.SetNormal(*normal)
    return plane


def kept_pieces(bounds):
    """What is kept of the steel and of the part: pieces, each between half spaces."""
    middle = [(bounds[i] + bounds[i + 1]) / 2 for i in (0, 2, 4)]
    far = [middle[0], middle[1] + 0.37 * (bounds[3] - bounds[2]), middle[2]]
    left, right = half_space(middle, (-1, 0, 0)), half_space(middle, (1, 0, 0))
    back, far_back = half_space(middle, (0, 1, 0)), half_space(far, (0, 1, 0))
    return {"steel": [(left, back), (right, far_back)], "part": [(left, back), (right,)], None: [()]}


def surface(source, half_spaces):
    for kept in half_spaces:
        clip = vtk.vtkClipDataSet()
        clip.SetInputConnection(source.GetOutputPort())
        clip.SetClipFunction(kept)
        source = clip
    skin = vtk.vtkDataSetSurfaceFilter()
    skin.SetInputConnection(source.GetOutputPort())
    return skin


def actor(skin, colour):
    mapper = vtk.vtkPolyDataMapper()
    mapper.SetInputConnection(skin.GetOutputPort())
    mapper.ScalarVisibilityOff()
    look = vtk.vtkActor()
    look.SetMapper(mapper)
    look.GetProperty().SetColor(*colour)
    look.GetProperty().EdgeVisibilityOn()
    look.GetProperty().SetEdgeColor(*(0.7 * c for c in colour))
    look.GetProperty().SetLineWidth(0.6)
    look.GetProperty().SetAmbient(0.25)
    look.GetProperty().SetDiffuse(0.8)
    return look


def add_looks(scene, reader):
    reader.Update()
    pieces = kept_pieces(reader.GetOutput().GetBounds())
    for _, component, materials, groups, colour, cut in LOOKS:
        picked = within(reader, "component", component, component)
        if materials:
            picked = within(picked, "material", *materials)
        if groups:
            picked = within(picked, "group", *groups)
        for half_spaces in pieces[cut]:
            scene.AddActor(actor(surface(picked, half_spaces), colour))


def legend():
    box = vtk.vtkLegendBoxActor()
    box.SetNumberOfEntries(len(LOOKS))
    square = vtk.vtkCubeSource()
    square.Update()
    for i, (name, _, _, _, colour, _) in enumerate(LOOKS):
        box.SetEntry(i, square.GetOutput(), name, colour)
    box.GetEntryTextProperty().ShadowOff()
    box.BorderOff()
    box.GetPositionCoordinate().SetValue(0.86, 0.02)
    box.GetPosition2Coordinate().SetValue(0.13, 0.2)
    return box


def aim_and_light(scene):
    camera = scene.GetActiveCamera()
    camera.SetFocalPoint(0, 0, 0)
    camera.SetPosition(0.45, -1.0, 0.5)
    camera.SetViewUp(0, 0, 1)
    scene.ResetCamera()
    camera.Zoom(1.4)
    for strength, place in ((0.55, (-0.6, -1, 0.4)), (0.75, (0.5, -0.3, 1)), (0.3, (1, -0.6, 0.2))):
        light = vtk.vtkLight()
        light.SetPosition(*place)
        light.SetIntensity(strength)
        scene.AddLight(light)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("mesh", help="VTU file from orvmesh export")
    parser.add_argument("picture", help="PNG file to write")
    arguments = parser.parse_args()
    reader = vtk.vtkXMLUnstructuredGridReader()
    reader.SetFileName(arguments.mesh)
    scene = vtk.vtkRenderer()
    scene.SetBackground(1, 1, 1)
    add_looks(scene, reader)
    scene.AddViewProp(legend())
    window = vtk.vtkRenderWindow()
    window.SetOffScreenRendering(1)
    window.SetMultiSamples(8)
    window.SetSize(1400, 900)
    window.AddRenderer(scene)
    aim_and_light(scene)
    window.Render()
    shot = vtk.vtkWindowToImageFilter()
    shot.SetInput(window)
    writer = vtk.vtkPNGWriter()
    writer.SetInputConnection(shot.GetOutputPort())
    writer.SetFileName(arguments.picture)
    writer.Write()


if __name__ == "__main__":
    main()
