French sample resource .urs
