#!/usr/bin/env python3
# ParaView's own reader on the export of a computed family:
#   paraview_read.py PVX RESULTS FOLDER
# exports RESULTS into FOLDER/bin (raw binary) and FOLDER/asc (ASCII), opens both collections with
# paraview.simple and holds their times against the index, and the mesh, the temperature, the
# displacement Ux and the mean Szz of an element at a stored step against the records `pvx results`
# prints.
# Exits 77 (skipped) when ParaView's Python modules are not installed.
import json
import os
import subprocess
import sys

try:
    from paraview import servermanager, simple
except ImportError:
    # The distribution's package serves the system's interpreter, which need not be the first
    # python3 on the path.
    system = "/usr/bin/python3"
    if os.path.exists(system) and os.path.realpath(sys.executable) != os.path.realpath(system):
        probe = subprocess.run([system, "-c", "import paraview.simple"], capture_output=True)
        if probe.returncode == 0:
            os.execv(system, [system] + sys.argv)
    print("skipped: python3-paraview is not installed")
    sys.exit(77)

pvx, res, folder = sys.argv[1:4]


def pvx_out(*arguments):
    return subprocess.run([pvx, *arguments], check=True, capture_output=True, text=True).stdout


def table(variable, stored):
    rows = pvx_out("results", res, "--var", str(variable), "--stored", str(stored), "--csv").splitlines()
    return [[float(cell) for cell in row.split(",")] for row in rows[1:]]


def near(a, b):
    return abs(a - b) <= 1e-6 * abs(b) + 1e-9


times = json.loads(pvx_out("results", res, "--json"))["storage_times"]
stem = os.path.splitext(os.path.basename(res))[0]
pvx_out("export", res, "--vtk", folder + "/bin")
pvx_out("export", res, "--vtk", folder + "/asc", "--ascii")
stored = 14
nodes, corners = table(1, stored), table(15, stored)  # node,x,y,value; element,corner,node,x,y,value
temperature, szz = [row[-1] for row in nodes], [row[-1] for row in corners]
ux = [row[-1] for row in table(11, stored)]
failures = []
for form in ("bin", "asc"):
    reader = simple.PVDReader(FileName=f"{folder}/{form}/{stem}.pvd")
    if list(reader.TimestepValues) != times:
        failures.append(f"{form}: times {list(reader.TimestepValues)} are not {times}")
    reader.UpdatePipeline(times[stored - 1])
    grid = servermanager.Fetch(reader)
    points, cells = grid.GetNumberOfPoints(), grid.GetNumberOfCells()
    if points != len(temperature) or cells * 4 != len(szz) or grid.GetCellType(0) != 9:
        failures.append(f"{form}: {points} points, {cells} cells of type {grid.GetCellType(0)}")
        continue
    t = grid.GetPointData().GetArray("Temperature [oC]")
    u = grid.GetPointData().GetArray("Displacement [mm]")
    s = grid.GetCellData().GetArray("Stress Szz [MPa]")
    for n in range(points):
        x, y, z = grid.GetPoint(n)
        if not near(x, nodes[n][1]) or not near(y, nodes[n][2]) or z != 0:
            failures.append(f"{form}: node {n + 1} at {(x, y, z)}")
        if not near(t.GetValue(n), temperature[n]) or not near(u.GetTuple3(n)[0], ux[n]):
            failures.append(f"{form}: node {n + 1}: {t.GetValue(n)}, {u.GetTuple3(n)[0]}")
    for e in range(cells):
        ids = grid.GetCell(e).GetPointIds()
        wanted = [int(row[2]) - 1 for row in corners[4 * e:4 * e + 4]]
        if [ids.GetId(c) for c in range(ids.GetNumberOfIds())] != wanted:
            failures.append(f"{form}: element {e + 1} on {[ids.GetId(c) for c in range(4)]}, not {wanted}")
        mean = sum(szz[4 * e:4 * e + 4]) / 4
        if not near(s.GetValue(e), mean):
            failures.append(f"{form}: element {e + 1}: Szz {s.GetValue(e)}, corners' mean {mean}")
print("\n".join(failures[:20]))
print(f"ParaView {simple.GetParaViewVersion()} read {len(times)} steps of {stem}: "
      + ("all values agree" if not failures else f"{len(failures)} disagreements"))
sys.exit(1 if failures else 0)
