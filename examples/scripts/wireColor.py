"""A panel for the colour of the wire. The views follow the slider while it is dragged; the picture below it, which the
viewer takes of itself, follows when the slider is let go."""

import os
import tempfile

from lirn import colorIndexSliderGrp, deleteUI, image, viewport


def followDrag():
    viewport(wireIndex=colorIndexSliderGrp("wireColor", query=True, value=True))


def followChange():
    followDrag()
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "model.png")
        viewport(snapshot=path, size=(260, 195))
        image("wirePicture", edit=True, image=path)


for name in ("wireColor", "wirePicture"):
    if colorIndexSliderGrp(name, exists=True) or image(name, exists=True):
        deleteUI(name)

viewport(shading="wire")
colorIndexSliderGrp("wireColor", label="Wire", minValue=1, maxValue=8,
                    value=viewport(query=True, wireIndex=True),
                    columnWidth=[(1, 40), (2, 50), (3, 150)],
                    annotation="The colour of the wire",
                    dragCommand=followDrag, changeCommand=followChange)
image("wirePicture", annotation="The model as it was when the slider was let go")
followChange()
