MeshVersionFormatted 1

Dimension 3

SolAtVertices
3
1 1

0.5
0.333333343
-2

End
