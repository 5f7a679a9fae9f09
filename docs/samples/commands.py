import lirn

colours = []

def show():
    colours.append(lirn.colorIndexSliderGrp("wire", query=True, value=True))

columns = [(1, 90), (2, 40)]  # pixels of the label's and the swatch's column
lirn.colorIndexSliderGrp("wire", label="Wire colour", minValue=1, maxValue=8, value=3, extraLabel="of 8",
                         columnWidth=columns, changeCommand=show)
lirn.colorIndexSliderGrp("face", label="Face colour", minValue=1, maxValue=8, value=6, extraLabel="of 8",
                         columnWidth=columns)
lirn.colorIndexSliderGrp("wire", edit=True, value=5)

if lirn.colorIndexSliderGrp("wire", query=True, value=True) != 5:
    raise ValueError("edited, but not changed")

try:
    lirn.colorIndexSliderGrp("wire", edit=True, minValue=9, maxValue=1)
except lirn.error as problem:
    print(problem)  # ... The maximum value must be greater than the minimum value.
