MeshVersionFormatted 3

Dimension 3

SolAtVertices
3
1 1

0.5
0.33333333333333331
-2

End
